// Makes the n-th of the host's calls fail that can leave something half done, whichever it is.
#pragma once

#include <cerrno>

#include <zpbase/platform/host_calls.h>

// While it lives, calls of the files' entries of the table are counted, and the n-th fails with error; 0 only counts. A close
// that fails has closed all the same.
class HostFaults {
 public:
  HostFaults(int n, int error) : m_Kept(zp::GetHostCalls())
  {
    g_Real = m_Kept;
    g_nLeft = n;
    g_nError = error;
    g_bFailed = false;
    Watch<&zp::HostCalls::Open, &zp::HostCalls::Close, &zp::HostCalls::Read, &zp::HostCalls::Write, &zp::HostCalls::ReadAt,
          &zp::HostCalls::WriteAt, &zp::HostCalls::SetLength, &zp::HostCalls::Sync, &zp::HostCalls::GetStatus,
          &zp::HostCalls::SetMode, &zp::HostCalls::Rename, &zp::HostCalls::RenameNew, &zp::HostCalls::MakeFolder>();
  }
  ~HostFaults() { zp::GetHostCalls() = m_Kept; }
  HostFaults(HostFaults const &) = delete;
  HostFaults & operator=(HostFaults const &) = delete;

  bool HasFailed() const { return g_bFailed; }

 private:
  template <auto entry>
  struct Watched;

  template <class Result, class... Args, Result (*zp::HostCalls::*entry)(Args...)>
  struct Watched<entry> {
    static Result Call(Args... args)
    {
      if (--g_nLeft != 0) return (g_Real.*entry)(args...);
      if constexpr (Watched::isClose) (g_Real.*entry)(args...);
      g_bFailed = true;
      errno = g_nError;
      return Result(-1);
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
  static inline int g_nError;
  static inline bool g_bFailed;

  zp::HostCalls m_Kept;
};
