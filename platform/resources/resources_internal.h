// The tables that the files of resources/ are compiled into, and the registered modules in front of them.

#pragma once

#include <vector>

#include <zpbase/platform/input.h>
#include <zpbase/platform/windows.h>

namespace zp {

struct ResourceText {
  unsigned int id;
  char const * text;
};

extern ResourceText const applicationTexts[];
extern unsigned int const applicationTextsCount;

extern ResourceText const libraryTexts[];
extern unsigned int const libraryTextsCount;

extern DialogTemplate const applicationTemplates[];
extern unsigned int const applicationTemplateCount;

extern AcceleratorTable const applicationAccelerators[];
extern unsigned int const applicationAcceleratorCount;

// Modules of one kind of resource, the last registered first. A module is a function that gives a resource by number, or null.
template <class Find>
class ModuleList {
 public:
  void Register(Find find) { m_Modules.insert(m_Modules.begin(), find); }
  void Unregister(Find find) { std::erase(m_Modules, find); }

  // The resource of the first module that has it, or null.
  auto Ask(UINT id) const -> decltype(Find{}(id))
  {
    for (Find const find : m_Modules)
      if (auto const found = find(id); found != nullptr) return found;
    return nullptr;
  }

 private:
  std::vector<Find> m_Modules;
};

}  // namespace zp
