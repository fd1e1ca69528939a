// GPMeter: a timer that lives with its object.

#include <zpbase/messages.h>
#include <zpbase/views.h>

GPMeter::GPMeter(CWnd * window, void (*proc)(HWND__ *, unsigned int, unsigned int, unsigned long), unsigned int interval)
    : m_hWnd(window != nullptr ? window->GetSafeHwnd() : nullptr), m_nTimerID(SetTimer(m_hWnd, GetNextTimerID(), interval, proc))
{
}

GPMeter::~GPMeter()
{
  KillTimer(m_hWnd, m_nTimerID);
}
