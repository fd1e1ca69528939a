// The platform's exceptions. They travel as pointers, are raised by the AfxThrow functions (one of dispatch_exception.h by
// InvokeHelper), and belong to the catcher, who releases one with Delete(). Memory that runs out is std::bad_alloc.
#pragma once

#include "runtime.h"
#include "string.h"

class ZP_API CException : public CObject {
  DECLARE_DYNAMIC(CException)
 public:
  void Delete() { delete this; }

  // Fills text, of size bytes with its terminator, with a sentence for the user; 0 and an empty text if there is none.
  virtual int GetErrorMessage(char * text, UINT size, UINT * helpContext = nullptr) const;

 protected:
  CException() = default;
};

class ZP_API CArchiveException : public CException {
  DECLARE_DYNAMIC(CArchiveException)
 public:
  enum Cause { none, genericException, readOnly, endOfFile, writeOnly, badIndex, badClass, badSchema, bufferFull };

  CArchiveException(int cause, char const * fileName);
  int GetErrorMessage(char * text, UINT size, UINT * helpContext = nullptr) const override;

  int m_cause;
  CString m_strFileName;  // empty for an archive on memory
};

class ZP_API CFileException : public CException {
  DECLARE_DYNAMIC(CFileException)
 public:
  enum Cause {
    none,
    genericException,
    fileNotFound,
    badPath,
    tooManyOpenFiles,
    accessDenied,
    invalidFile,
    removeCurrentDir,
    directoryFull,
    badSeek,
    hardIO,
    sharingViolation,
    lockViolation,
    diskFull,
    endOfFile
  };

  explicit CFileException(int cause = none, LONG osError = -1, char const * fileName = nullptr);
  int GetErrorMessage(char * text, UINT size, UINT * helpContext = nullptr) const override;

  int m_cause;
  LONG m_lOsError;  // the system's error number, such as 2 or 32; -1 if there is none
  CString m_strFileName;
};

// A bad index or position given to a container.
class ZP_API CInvalidArgException : public CException {
  DECLARE_DYNAMIC(CInvalidArgException)
 public:
  int GetErrorMessage(char * text, UINT size, UINT * helpContext = nullptr) const override;
};

// A failed operation of the automation services, with its 32-bit result code.
class ZP_API COleException : public CException {
  DECLARE_DYNAMIC(COleException)
 public:
  explicit COleException(LONG code = 0) : m_sc(code) {}
  int GetErrorMessage(char * text, UINT size, UINT * helpContext = nullptr) const override;

  LONG m_sc;
};

// What an automation server told about its own failure. A sibling of COleException: a guard for one misses the other.
class ZP_API COleDispatchException : public CException {
  DECLARE_DYNAMIC(COleDispatchException)
 public:
  explicit COleDispatchException(char const * description, UINT helpContext = 0, WORD code = 0)
      : m_wCode(code), m_strDescription(description), m_dwHelpContext(helpContext)
  {
  }
  int GetErrorMessage(char * text, UINT size, UINT * helpContext = nullptr) const override;

  WORD m_wCode;  // the server's own number; 0 where m_scError tells
  CString m_strDescription;
  DWORD m_dwHelpContext;
  CString m_strHelpFile;
  CString m_strSource;  // the program that failed
  LONG m_scError = 0;
};

[[noreturn]] ZP_API void AfxThrowArchiveException(int cause, char const * fileName = nullptr);
[[noreturn]] ZP_API void AfxThrowFileException(int cause, LONG osError = -1, char const * fileName = nullptr);
[[noreturn]] ZP_API void AfxThrowInvalidArgException();
[[noreturn]] ZP_API void AfxThrowOleException(LONG code);
[[noreturn]] ZP_API void AfxThrowOleDispatchException(COleDispatchException const & told);

namespace zp {

// Releases an exception that its catcher absorbs, however the handler ends.
class ExceptionGuard {
 public:
  explicit ExceptionGuard(CException * caught) : m_pCaught(caught) {}
  ~ExceptionGuard() { m_pCaught->Delete(); }
  ExceptionGuard(ExceptionGuard const &) = delete;
  ExceptionGuard & operator=(ExceptionGuard const &) = delete;

 private:
  CException * m_pCaught;
};

}  // namespace zp
