// The way from Python into the library, which locks nothing: one thread at a time is in it, and other Python threads go on
// meanwhile. What works on an object of Python's own alone, such as a vector, runs under the interpreter's lock and needs none of
// this.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "python/bindings.h"

namespace zp::python {

// For as long as it lives this thread is the one in the library; the lines that the library's tools tell go to told.
class LibraryCall {
 public:
  enum class Others { GoOn, Wait };  // the other Python threads

  LibraryCall(std::vector<std::string> & told, Others others);
  ~LibraryCall();
  LibraryCall(LibraryCall const &) = delete;
  LibraryCall & operator=(LibraryCall const &) = delete;

 private:
  std::optional<py::gil_scoped_release> m_Released;  // first: the library is given back before Python is waited for
  std::unique_lock<std::mutex> m_Lock;
};

// Lines become warnings of Python's. Raises what a filter makes of them.
void Warn(std::vector<std::string> const & told);

// The result of work, which touches no Python object. Others wait for what the library does to the process itself.
template <class Work>
auto InLibrary(Work const & work, LibraryCall::Others others = LibraryCall::Others::GoOn)
{
  std::vector<std::string> told;
  if constexpr (std::is_void_v<decltype(work())>) {
    {
      LibraryCall const call(told, others);
      work();
    }
    Warn(told);
  } else {
    auto result = [&] {
      LibraryCall const call(told, others);
      return work();
    }();
    Warn(told);
    return result;
  }
}

}  // namespace zp::python
