// The library's failures as Python's own exceptions, and texts on the way there.

#include <cerrno>
#include <exception>
#include <utility>

#include <zpbase/platform/exceptions.h>

#include "python/bindings.h"
#include "tools/program.h"

namespace zp::python {

namespace {

// OSError itself chooses FileNotFoundError, PermissionError, BlockingIOError and their like by the number.
void setOSError(int error, std::string const & sentence)
{
  PyObject * const made = PyObject_CallFunction(PyExc_OSError, "iO", error, TextOf(sentence).ptr());
  if (made == nullptr) return;
  PyErr_SetObject(reinterpret_cast<PyObject *>(Py_TYPE(made)), made);
  Py_DECREF(made);
}

int errorOf(CFileException const & problem)
{
  switch (problem.m_cause) {
    case CFileException::fileNotFound:
    case CFileException::badPath:
      return ENOENT;
    case CFileException::accessDenied:
      return EACCES;
    case CFileException::sharingViolation:
    case CFileException::lockViolation:
      return EWOULDBLOCK;
    case CFileException::tooManyOpenFiles:
      return EMFILE;
    case CFileException::diskFull:
      return ENOSPC;
    default:
      return EIO;
  }
}

// A framework exception comes as a pointer and belongs to who catches it.
void translate(std::exception_ptr raised)
{
  try {
    if (raised) std::rethrow_exception(std::move(raised));
  } catch (SystemFailure const & failure) {
    setOSError(failure.GetError(), failure.what());
  } catch (Failure const & failure) {
    PyErr_SetObject(PyExc_ValueError, TextOf(failure.what()).ptr());
  } catch (CFileException * caught) {
    ExceptionGuard const guard(caught);
    setOSError(errorOf(*caught), Describe(*caught));
  } catch (CException * caught) {
    ExceptionGuard const guard(caught);
    PyErr_SetObject(PyExc_ValueError, TextOf(Describe(*caught)).ptr());
  }
}

}  // namespace

void AddErrors()
{
  py::register_exception_translator(translate);
}

py::str TextOf(std::string_view utf8)
{
  PyObject * const text = PyUnicode_DecodeUTF8(utf8.data(), static_cast<Py_ssize_t>(utf8.size()), "surrogateescape");
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(text);
}

std::string Utf8Of(py::str const & text)
{
  Py_ssize_t length = 0;
  char const * const bytes = PyUnicode_AsUTF8AndSize(text.ptr(), &length);
  if (bytes == nullptr) throw py::error_already_set();  // a UnicodeEncodeError is a ValueError
  return {bytes, static_cast<size_t>(length)};
}

std::string HostNameOf(py::handle path)
{
  PyObject * bytes = nullptr;
  if (PyUnicode_FSConverter(path.ptr(), &bytes) == 0) throw py::error_already_set();
  return py::reinterpret_steal<py::bytes>(bytes);
}

}  // namespace zp::python
