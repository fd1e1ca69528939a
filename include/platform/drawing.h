// Device contexts: what drawing goes through. A CDC is its state.
#pragma once

#include "runtime.h"
#include "types.h"

class ZP_API CDC : public CObject {
  DECLARE_DYNAMIC(CDC)
 public:
  CDC() = default;
  CDC(CDC const &) = delete;
  CDC & operator=(CDC const &) = delete;

  virtual COLORREF SetTextColor(COLORREF color);  // gives the former one
  COLORREF GetTextColor() const { return m_nTextColor; }

 private:
  COLORREF m_nTextColor = 0;  // black
};
