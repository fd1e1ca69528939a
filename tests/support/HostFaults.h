// Makes the n-th of the host's calls fail, whichever it is.
#pragma once

#include <cerrno>
#include <type_traits>

#include <zpbase/platform/host_calls.h>

// How a call fails, and whether those behind it do too. A close that fails has closed all the same.
struct HostFault {
  int error = EIO;
  bool forGood = false;
  bool comesShort = false;  // a read or write moves half of its bytes and tells so; with forGood those behind it fail with error
};

// While it lives, calls of the files' entries of the table are counted, and the n-th fails; 0 only counts.
class HostFaults {
 public:
  // Of those that can leave something half done.
  HostFaults(int n, int error) : HostFaults(n, HostFault{error}, nullptr) {}

  // Of those that look and lock, too.
  HostFaults(int n, HostFault fault) : HostFaults(n, fault, nullptr)
  {
    Watch<&zp::HostCalls::Lock, &zp::HostCalls::GetStatusOf, &zp::HostCalls::SetTimesOf, &zp::HostCalls::SetModeOf,
          &zp::HostCalls::Link, &zp::HostCalls::Remove, &zp::HostCalls::GetStatusOfLink, &zp::HostCalls::ResolveLinks>();
  }
  ~HostFaults() { zp::GetHostCalls() = m_Kept; }
  HostFaults(HostFaults const &) = delete;
  HostFaults & operator=(HostFaults const &) = delete;

  bool HasFailed() const { return g_bFailed; }
  int GetCount() const { return -g_nLeft; }  // calls so far, while none is to fail

 private:
  HostFaults(int n, HostFault fault, void *) : m_Kept(zp::GetHostCalls())
  {
    g_Real = m_Kept;
    g_nLeft = n;
    g_Fault = fault;
    g_bFailed = false;
    Watch<&zp::HostCalls::Open, &zp::HostCalls::Close, &zp::HostCalls::Read, &zp::HostCalls::Write, &zp::HostCalls::ReadAt,
          &zp::HostCalls::WriteAt, &zp::HostCalls::SetLength, &zp::HostCalls::Sync, &zp::HostCalls::GetStatus,
          &zp::HostCalls::SetMode, &zp::HostCalls::Rename, &zp::HostCalls::RenameNew, &zp::HostCalls::MakeFolder>();
  }

  static bool FailsNow()
  {
    --g_nLeft;
    bool const fails = g_nLeft == 0 || (g_Fault.forGood && g_nLeft < 0 && g_bFailed);
    g_bFailed |= fails;
    return fails;
  }

  // Half of the bytes of a read or write; another call, or a single byte, fails outright.
  template <class Result, class Buffer, class... Rest>
  static Result ComeShort(Result (*call)(int, Buffer *, size_t, Rest...), int file, Buffer * buffer, size_t count, Rest... rest)
  {
    return count > 1 ? call(file, buffer, count / 2, rest...) : Result(-1);
  }
  template <class Result, class... Params, class... Args>
  static Result ComeShort(Result (*)(Params...), Args const &...)
  {
    return Result(-1);
  }

  template <auto entry>
  struct Watched;

  template <class Result, class... Args, Result (*zp::HostCalls::*entry)(Args...)>
  struct Watched<entry> {
    static Result Call(Args... args)
    {
      if (!FailsNow()) return (g_Real.*entry)(args...);
      if constexpr (Watched::isClose) (g_Real.*entry)(args...);
      errno = g_Fault.error;
      if constexpr (std::is_pointer_v<Result>)
        return nullptr;
      else
        return g_Fault.comesShort && g_nLeft == 0 ? ComeShort(g_Real.*entry, args...) : Result(-1);
    }
    static constexpr bool isClose = [] {
      if constexpr (requires { entry == &zp::HostCalls::Close; }) return entry == &zp::HostCalls::Close;
      return false;
    }();
  };

  template <auto... entries>
  static void Watch()
  {
    ((zp::GetHostCalls().*entries = &Watched<entries>::Call), ...);
  }

  static inline zp::HostCalls g_Real;
  static inline int g_nLeft;
  static inline HostFault g_Fault;
  static inline bool g_bFailed;

  zp::HostCalls m_Kept;
};
