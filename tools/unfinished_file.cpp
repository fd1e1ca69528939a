// The list of unfinished files: a signal meets it whole at any time, as each change is one store.

#include "tools/unfinished_file.h"

#include <csignal>
#include <utility>

#include <zpbase/platform/host_calls.h>

#include "tools/interrupt_guard.h"

std::atomic<UnfinishedFile *> UnfinishedFile::m_pFirst = nullptr;

static_assert(std::atomic<UnfinishedFile *>::is_always_lock_free);

UnfinishedFile::UnfinishedFile(std::string hostName) : m_strName(std::move(hostName)), m_pNext(m_pFirst.load())
{
  m_pFirst = this;
  for (int const signal : endingSignals) Watch(signal);
}

UnfinishedFile::~UnfinishedFile()
{
  std::atomic<UnfinishedFile *> * place = &m_pFirst;
  while (place->load() != this) place = &place->load()->m_pNext;
  place->store(m_pNext);
}

// The signal is held back until the handler returns, and has its usual effect then.
void UnfinishedFile::RemoveAllAndEnd(int signal)
{
  for (UnfinishedFile const * each = m_pFirst; each != nullptr; each = each->m_pNext)
    zp::GetHostCalls().Remove(each->m_strName.c_str());
  std::raise(signal);
}

// Stays when the last file has gone: without files the handler is the usual effect.
void UnfinishedFile::Watch(int signal)
{
  struct sigaction action = {};
  if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) return;
  action.sa_handler = RemoveAllAndEnd;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigfillset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}
