// Every test program runs in the locale that its user has set, as a program with windows does: what the library promises "in the
// C locale whatever the process has set" is put to the test wherever that is another one.

#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char ** argv)
{
  std::setlocale(LC_ALL, "");
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
