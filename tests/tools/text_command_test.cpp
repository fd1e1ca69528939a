// zp text on files of different make: what it prints, what it reports, and its exit status.

#include <gtest/gtest.h>

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <random>
#include <thread>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

using namespace std::string_literals;

namespace {

struct Outcome {
  int status;
  std::string output;
  std::string errors;
};

// Runs zp in the folder, with temporary files in it too.
Outcome runText(TempFolder const & folder, std::string const & arguments)
{
  std::string const command = "cd '" + folder.Path().string() + "' && mkdir -p tmp && TMPDIR=\"$PWD/tmp\" timeout 20 '" +
                              ZpProgram() + "' text " + arguments + " 2>errors";
  std::FILE * const pipe = popen(command.c_str(), "r");
  Outcome outcome;
  char piece[4096];
  for (size_t count; (count = std::fread(piece, 1, sizeof piece, pipe)) > 0;) outcome.output.append(piece, count);
  int const ended = pclose(pipe);
  outcome.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
  outcome.errors = folder.Read("errors");
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path() / "tmp")) << "a temporary file was left";
  return outcome;
}

struct Row {
  std::string bytes;
  char const * arguments;
  int status;
  char const * output;
  char const * errors = "";
};

void runRows(std::initializer_list<Row> rows)
{
  for (Row const & row : rows) {
    TempFolder const folder;
    folder.Write("f", row.bytes);
    Outcome const outcome = runText(folder, row.arguments);
    EXPECT_EQ(outcome.status, row.status) << row.arguments << '\n' << row.bytes;
    EXPECT_EQ(outcome.output, row.output) << row.arguments << '\n' << row.bytes;
    EXPECT_EQ(outcome.errors, row.errors) << row.arguments << '\n' << row.bytes;
  }
}

// The hints that zp text lines gives.
std::string hintsOf(std::string const & bytes, std::string const & options = "")
{
  TempFolder const folder;
  folder.Write("f", bytes);
  std::string const output = runText(folder, "lines f " + options).output;
  size_t const first = output.find("hint: ");
  return first == std::string::npos ? "" : output.substr(first + 6);
}

}  // namespace

TEST(TextCommand, KeepsEachValueInItsColumn)
{
  runRows({
      {"1,2\r\n,5\r\n,,\r\n6,\r\n", "numbers f", 0, "1,2\n,5\n,,\n6,\n",
       "zp: f: lines have 2 to 3 values; short ones were not filled up\n"},
      {"\t1\t2\r\n3\t\t4 \r\n", "numbers f", 0, ",1,2\n3,,4\n"},
      {"  1.5,  2.5\r\n\t\r\n 14.5 ,-5\r\n", "numbers f", 0, "1.5,2.5\n14.5,-5\n"},
      {"1 ; ;3\r\n4;5;6\r\n", "numbers f", 0, "1,,3\n4,5,6\n"},
      {"\"1\",\"2.5\"\r\n\"\",\" 3 \"\r\n", "numbers f", 0, "1,2.5\n,3\n"},
      {"1 2   \r\n\t3\t4\r\n\f\r\n5\v6 \r\n", "numbers f", 0, "1,2\n3,4\n5,6\n"},
      {"1 2 3\r\n4 5\r\n", "numbers f", 0, "1,2,3\n4,5\n",
       "zp: f: lines have 2 to 3 values; where one is missing between blanks, those behind it have moved up\n"},
      {"1|2\r\n|3\r\n", "numbers --delimiter '|' f", 0, "1,2\n,3\n"},
      {"1,2\r\n1 2\r\n3 4\r\n", "numbers --delimiter comma f", 1, "1,2\n",
       "f: line 2, column 1: \"1 2\" is no number\nf: line 3, column 1: \"3 4\" is no number\n"
       "f: hint: some lines have another delimiter; --delimiter reads those and reports the others\n"},
      {"1,2\r\n1 2\r\n3 4\r\n", "numbers f --skip 1", 0, "1,2\n3,4\n"},
      {"T;p\r\n298,15;3,17\r\n", "numbers --skip 1 --decimal-comma f", 0, "298.15,3.17\n"},
      {"\"298,15\",\"3\"\r\n", "numbers --decimal-comma f", 0, "298.15,3\n"},
      {"# x\r\n1 2 # note\r\n", "numbers --comment '#' f", 0, "1,2\n"},
  });
}

TEST(TextCommand, KeepsHeadsNamesAndDates)
{
  char const * const cars = "\"mpg\" \"cyl\"\n\"Mazda \"\"RX4\"\"\" 21 6\n\"Fiat, 128\" 32.40 4\n";
  runRows({
      {cars, "numbers f", 0, ",mpg,cyl\n\"Mazda \"\"RX4\"\"\",21,6\n\"Fiat, 128\",32.4,4\n"},
      {"\"a\",\"b\"\n\"1\",2,3\n\"2\",5,6\n", "numbers f", 0, ",a,b\n1,2,3\n2,5,6\n"},
      {"Date,Open,\xB0"
       "C\n2004-01-02,1.50,-\n2004-01-05,NA,x y\n2004-01-06,nan,2\n2004-01-07,-99,\"-99\"\n007,x,3\n",
       "numbers f --missing -99,'x y'", 1,
       "Date,Open,\u00B0"
       "C\n2004-01-02,1.5,\n2004-01-05,,\n2004-01-06,,2\n2004-01-07,,\n",
       "f: line 6, column 5: \"x\" is no number\n"},
      {"Prose stands here\n\nT p\n1 2\nT p\n3 4\n", "numbers f", 1, "T,p\n1,2\n3,4\n",
       "f: line 1, column 1: \"Prose\" is no number\nf: line 5, column 1: \"T\" is no number\n"},
      {"Prose\n\nT,p\n1,2\n", "numbers f", 1, "T,p\n1,2\n",
       "f: line 1, column 1: \"Prose\" is no number\nf: hint: --skip 2 passes over what stands in front of the head\n"},
      {"T,p\nx,1\n2,n/a\n3,4\n", "numbers --columns p,T f", 1, "p,T\n4,3\n",
       "f: line 2, column 1: \"x\" is no number\nf: line 3, column 3: \"n/a\" is no number\n"},
      {"# T p\n1 2\n", "numbers f", 1, "1,2\n",
       "f: line 1, column 1: \"#\" is no number\n"
       "f: hint: --comment TEXT leaves out the rest of a line from TEXT on, such as --comment '#'\n"},
      {"a x 1\nb y 2\n3 z 3\n", "lines f", 0,
       "3 lines, delimiter blank: 3 numeric, 0 blank, 0 not numeric; the longest has 5 characters\ntexts in column 1, 2\n"},
      {"O\trt;T\nK\xF6ln;1,5\n", "lines f", 0,
       "2 lines, delimiter semicolon with decimal commas: 1 numeric, 0 blank, 0 not numeric; the longest has 8 characters\n"
       "head in line 1: O\\x09rt, T\ntexts in column 1\n"},
      {"Datum;IP;T\n01.02.2024;10.168.100.1;5,5\n02.02.2024;10.168.100.20;6,1\n", "numbers f", 0,
       "Datum,IP,T\n01.02.2024,10.168.100.1,5.5\n02.02.2024,10.168.100.20,6.1\n"},
      {"1.1.1\t5,5\n1.1.2\t6,5\n", "numbers f", 0, "1.1.1,5.5\n1.1.2,6.5\n"},
  });
}

TEST(TextCommand, LooksAtTheChosenColumnsAlone)
{
  std::string const table = "day,T,\"p, bar\",note\nMo,1,5,a\nTu,2,x,b\nWe,,7\n";
  runRows({
      {table, "numbers --columns T f", 0, "T\n1\n2\n\n"},
      {table, "numbers --columns '2-3,day' f", 1, "T,\"p, bar\",day\n1,5,Mo\n,7,We\n",
       "f: line 3, column 6: \"x\" is no number\n"},
      {table, "numbers --columns 4,1 f", 0, "note,day\na,Mo\nb,Tu\n,We\n"},
      {table, "numbers --columns 5 f", 2, "", "zp: --columns 5: a line has 4 columns\n"},
      {table, "numbers --columns t f", 2, "", "zp: --columns t: is no column; there are day, T, p, bar, note\n"},
      {"1 2\n", "numbers --columns 0 f", 2, "",
       "zp: --columns 0: is no column; the file has no head, so columns have numbers alone\n"},
  });
}

TEST(TextCommand, FindsTheDelimiterThatMakesMostLinesNumeric)
{
  struct {
    char const * bytes;
    char const * delimiter;
  } const rows[] = {
      {"1,2\r\n3,4\r\n1 2\r\n", "comma"},
      {"1,2\r\n1 2\r\n3\t4\r\n", "blank"},
      {"1\t2\r\n3\t\r\n", "tab"},
      {"1\t2 3\r\n", "blank"},
      {"1, 2, 3\r\n", "comma"},
      {"1\r\n2\r\n", "none"},
      {"1\r\n\t\r\n2 3\r\n", "blank"},
      {",,,\r\n1 2\r\n", "blank"},
      {"Buzz,1\r\nRex 2,3\r\n", "comma"},
      {"x\t1\ty z\r\n", "tab"},
      {"298,15;3,17\r\n", "semicolon with decimal commas"},
      {"298,15\t3,17\r\nx\t1\r\n", "tab with decimal commas"},
      {"n;1,5;2\r\nm;3,5;\r\n", "semicolon with decimal commas"},
      {"1;2\r\n1,2\r\n3;4\r\n", "semicolon"},
      {"298,15 3,17\r\n", "none"},
      {"a b\r\n", "none"},
      {"\"a, b\";1;2\r\n\"x;y\";3\r\n", "semicolon"},
  };
  for (auto const & row : rows) {
    TempFolder const folder;
    folder.Write("f", row.bytes);
    EXPECT_NE(runText(folder, "lines f").output.find(", delimiter "s + row.delimiter + ":"), std::string::npos)
        << row.bytes << runText(folder, "lines f").output;
  }
}

TEST(TextCommand, KeepsAQuotedCellWhole)
{
  runRows({
      {"\"a, b\",1\r\n\"1\" ,2\r\n\"say \"\"x, y\"\"\",3\r\n\"5,6\r\n", "numbers --delimiter comma f", 0,
       "\"a, b\",1\n1,2\n\"say \"\"x, y\"\"\",3\n\"\"\"5\",6\n"},
  });
}

TEST(TextCommand, PrintsNumbersWithNothingLost)
{
  runRows({
      {"9007199254740993 12345678901234567890 +100000000000000000000 007\r\n", "numbers f", 0,
       "9007199254740993,12345678901234567890,100000000000000000000,7\n"},
      {"0.298D+03 -.5d-1 4e3 +5 -0 1.50000000000000000000 .12345678901234567D-04\r\n", "numbers f", 0,
       "298,-0.05,4000,5,-0,1.5,.12345678901234567E-04\n"},
      {"1e-400 1.23456789e-320 1e22 0e5\r\n", "numbers f", 0, "1e-400,1.23456789e-320,1e+22,0\n"},
  });
}

// Numbers of few digits go to their shortest form without a double.
TEST(TextCommand, PrintsTheShortestFormThatADoubleHas)
{
  std::mt19937_64 random(5);
  std::string text;
  std::string expected;
  for (int i = 0; i < 20000; ++i) {
    std::string number = std::to_string(random() % 1'000'000'000 >> random() % 30);
    number.insert(random() % number.size() + 1, ".").append(random() % 3, '0');
    int const exponent = static_cast<int>(random() % 29) - 20;
    if (random() % 2 != 0) number += "e" + std::to_string(exponent > 5 ? exponent + 14 : exponent);
    if (random() % 3 == 0) number.insert(0, "-");
    text += number + "\r\n";
    double value = 0;
    std::from_chars(number.data(), number.data() + number.size(), value);
    char shortest[40];
    expected.append(shortest, std::to_chars(shortest, std::end(shortest), value, std::chars_format::general, 15).ptr) += '\n';
  }
  TempFolder const folder;
  folder.Write("f", text);
  EXPECT_EQ(runText(folder, "numbers f").output, expected);
}

TEST(TextCommand, TakesNothingElseForANumber)
{
  for (char const * word : {"+",    ".",    "E",   "1e",    "1e5x", "0x10",  "1-3", "1.2.3.4", "0.10132-100", "1e400",
                            "-nan", "-inf", "10%", "1_000", "\"1",  "1\"\"", "1,5", "--",      "na",          "NAN"}) {
    TempFolder const folder;
    folder.Write("f", "1 2\r\n3 "s + word + "\r\n4 5\r\n");
    Outcome const outcome = runText(folder, "numbers --delimiter blank --report 1 f");
    EXPECT_EQ(outcome.status, 1) << word;
    EXPECT_EQ(outcome.output, "1,2\n4,5\n") << word;
    EXPECT_EQ(outcome.errors.substr(0, outcome.errors.find('\n')), "f: line 2, column 3: \""s + word + "\" is no number");
  }
}

TEST(TextCommand, ReadsEveryLineEndAndSaysWhereTheyAreMixed)
{
  char const * const one = "zp: f: 1 line ends in LF alone, others in CR LF; the file may be of two halves\n";
  char const * const two = "zp: f: 2 lines end in LF alone, others in CR LF; the file may be of two halves\n";
  runRows({
      {"1 2\n3 4\n", "numbers f", 0, "1,2\n3,4\n"},
      {" 1 2 \n 3 4 \n 5 6 ", "numbers f", 0, "1,2\n3,4\n5,6\n"},
      {"1 2\n3 4\n5 6\r\n", "numbers f", 0, "1,2\n3,4\n5,6\n", two},
      {"1 2\r\n3 4\n5 6\r\n", "numbers f", 0, "1,2\n3,4\n5,6\n", one},
      {"1 2\r\n3 4\n", "numbers f", 0, "1,2\n3,4\n", one},
      {"1 2\r3 4\r", "numbers f", 0, "1,2\n3,4\n"},
      {"1 2\r\n3 4\r\n\x1A", "numbers f", 0, "1,2\n3,4\n"},
      {"\xEF\xBB\xBF"
       "1,2\r\n3,4\r\n",
       "numbers f", 0, "1,2\n3,4\n"},
      {"1 2\r\n", "numbers - < f", 0, "1,2\n"},
      {"\xFF\xFE"
       "1\0\r\0\n\0"s,
       "numbers f", 1, "", "zp: f: is UTF-16 text; convert it, as by iconv -f UTF-16 -t WINDOWS-1252\n"},
      {"\0001\0 \0002\0\r\0\n"s, "numbers f", 1, "",
       "zp: f: is UTF-16 text; convert it, as by iconv -f UTF-16 -t WINDOWS-1252\n"},
  });
}

TEST(TextCommand, CountsAndShowsLines)
{
  runRows({
      {"1\r\n\f\r\nx\r\ny\r\n", "lines --report 1 f", 1,
       "4 lines, delimiter none: 1 numeric, 1 blank, 2 not numeric; the longest has 1 character\nf: line 3, column 1: \"x\" is "
       "no number\n"
       "f: 2 such lines in all; --report N shows more\n"},
      {"#\r\n1,2\r\n\r\n", "lines --comment '#' f", 0,
       "3 lines, delimiter comma: 1 numeric, 1 blank, 1 comment, 0 not numeric; the longest has 3 characters\n"},
      {"1 \x1B[31m\x7F \xB0\r\n2 \xC2\xB0\xC2\x9B"
       "C\r\n\"a b\" 1\r\n",
       "lines f", 1,
       "3 lines, delimiter blank: 0 numeric, 0 blank, 3 not numeric; the longest has 10 characters\nf: no line is numeric\n"
       "f: line 1, column 3: \"\\x1b[31m\\x7f\" is no number\nf: line 2, column 3: \"\xC2\xB0\\x9bC\" is no number\n"
       "f: line 3, column 1: \"a b\" is no number\n"},
      {"a b c\r\n" + std::string(50, 'x') + " 1\r\n1 2\r\n", "lines f", 1,
       "3 lines, delimiter blank: 1 numeric, 0 blank, 2 not numeric; the longest has 52 characters\nf: line 1, column 1: \"a\" "
       "is no number\n"
       "f: line 2, column 1: \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...\" is no number\n"
       "f: hint: --skip 2 passes over what stands in front of the first numeric line\n"},
      {"n,1\r\nRex,3\r\nRex,x\r\nRex,y\r\n", "lines --json --report 1 f", 1,
       "{\n  \"blank\": 0,\n  \"comments\": 0,\n  \"decimal_comma\": false,\n  \"delimiter\": \"comma\",\n  \"head_line\": 0,\n"
       "  \"hints\": [],\n  \"lines\": 4,\n  \"longest\": 5,\n"
       "  \"not_numeric\": [\n    {\n      \"column\": 5,\n      \"line\": 3,\n      \"text\": \"x\"\n    },\n    {\n"
       "      \"column\": 5,\n      \"line\": 4,\n      \"text\": \"y\"\n    }\n  ],\n  \"numeric\": 2,\n"
       "  \"text_columns\": [\n    1\n  ]\n}\n"},
  });
}

TEST(TextCommand, ShowsWhereColumnsStand)
{
  runRows({
      {"1  22\r\n10 2   \r\n", "columns f", 0,
       "delimiter: blank\nvalues on a line: 2\ncolumn 1: characters 1 to 2\ncolumn 2: characters 4 to 5\n"},
      {"T\r\n 1,,33,\r\n10,,3,\r\n", "columns f --skip 1", 0,
       "delimiter: comma\nvalues on a line: 4\ncolumn 1: characters 1 to 2\ncolumn 2: characters 5 to 6\n"},
      {"1 2\r\n1  2\r\n1 x\r\n", "columns f", 0,
       "delimiter: blank\nvalues on a line: 2\ncolumn 1: characters 1 to 1\ncolumn 2: characters 3 to 3\ncolumn 3: characters 4 "
       "to 4\n"
       "more columns than values on a line: some lack values, or they don't stand below each other\n"
       "1 line is not numeric; zp text lines shows it\n"},
      {"1\t2\r\n1234\r\n", "columns --json f", 0,
       "{\n  \"columns\": [],\n  \"delimiter\": \"tab\",\n  \"fewest_values\": 1,\n  \"most_values\": 2,\n  \"not_numeric\": "
       "0\n}\n"},
      {"a\r\n", "columns f", 1, "f: no line is numeric; zp text lines shows why\n"},
  });
}

TEST(TextCommand, SaysWhyNothingIsNumeric)
{
  runRows({
      {"", "lines f", 1,
       "0 lines, delimiter none: 0 numeric, 0 blank, 0 not numeric; the longest has 0 characters\nf: is empty\n"},
      {"", "numbers f", 1, "", "zp: f: is empty\n"},
      {"\r\n  \r\n", "columns f", 1, "f: has blank lines alone\n"},
      {"\r\n#\r\n", "numbers --comment '#' f", 1, "", "zp: f: has comments and blank lines alone\n"},
      {"1\r\n", "numbers --skip 2 f", 1, "", "zp: f: --skip 2 passes over all its lines\n"},
      {"a b\r\n", "numbers f", 1, "", "f: line 1, column 1: \"a\" is no number\nzp: f: no line is numeric\n"},
  });
}

TEST(TextCommand, HintsAtWhatHelps)
{
  EXPECT_TRUE(hintsOf("1;2,5\r\n1;2.5\r\n1;3.5\r\n").starts_with("--decimal-comma reads"));
  EXPECT_TRUE(hintsOf("1.5;2\r\n", "--decimal-comma").starts_with("where numbers have decimal commas, a point"));
  EXPECT_TRUE(hintsOf("1,5;2\r\n1.234.567,8;3,5\r\n1,5;2,5\r\n").starts_with("where numbers have decimal commas, a point"));
  EXPECT_TRUE(hintsOf("1,000,000 2\r\n").starts_with("commas between groups"));
  EXPECT_TRUE(hintsOf("# x\r\n1 2\r\n").starts_with("--comment TEXT"));
  EXPECT_TRUE(hintsOf("1|2\r\n").starts_with("--delimiter CHAR"));
  EXPECT_TRUE(hintsOf("1 1.#QNAN\r\n").starts_with("infinite and undefined"));
  EXPECT_TRUE(hintsOf("1 -NaN\r\n").starts_with("infinite and undefined"));
  EXPECT_TRUE(hintsOf("1 1e400\r\n").starts_with("beyond 1.8e308"));
  EXPECT_TRUE(hintsOf("1 2\r\n1 -0x1F\r\n").starts_with("hexadecimal"));
  EXPECT_TRUE(hintsOf("2024-01-02 12:30\r\n").starts_with("dates and times"));
  EXPECT_TRUE(hintsOf("1 2\r\n1 1.2.2024\r\n").starts_with("dates and times"));
  EXPECT_TRUE(hintsOf("1 0.1-100\r\n").starts_with("two numbers run together"));
  EXPECT_TRUE(hintsOf("1 ****\r\n").starts_with("asterisks"));
  EXPECT_EQ(hintsOf("1 2\r\nx\r\n"), "");
}

TEST(TextCommand, RefusesWhatIsNoFile)
{
  runRows({
      {"", "lines none", 1, "", "zp: none: there is no such file; check the name\n"},
      {"", "lines .", 1, "", "zp: .: is a folder; name a file\n"},
      {"", "lines /dev/zero", 1, "", "zp: /dev/zero: is no file or pipe; give a file's name, or - for standard input\n"},
      {"", "lines", 2, "", "zp: FILE is required; see zp text lines --help\n"},
      {"1\r\n", "lines --delimiter 5 f", 2, "",
       "zp: --delimiter \"5\": is comma, tab, semicolon, blank, or one character that no number has in it\n"},
      {"1\r\n", "lines --skip -1 f", 2, "",
       "zp: --skip: \"-1\" is no whole number from 0 to 2147483647; see zp text lines --help\n"},
  });
  TempFolder const folder;
  folder.Write("long", "1 2\r\n");
  std::filesystem::resize_file(folder.Path() / "long", 0x7FFFFFFF);
  EXPECT_EQ(runText(folder, "lines long").errors,
            "zp: long: is too long: at most 2147483645 bytes can be parsed at once; split it\n");
  ASSERT_EQ(mkfifo((folder.Path() / "pipe").c_str(), 0600), 0);
  std::thread writer([&] { std::ofstream(folder.Path() / "pipe") << "1 2\n3 4\n"; });
  EXPECT_EQ(runText(folder, "numbers pipe").output, "1,2\n3,4\n");
  writer.join();
  folder.Write("held", "1 2\r\n");
  std::FILE * const held = std::fopen((folder.Path() / "held").c_str(), "r+");
  ASSERT_EQ(flock(fileno(held), LOCK_EX), 0);
  EXPECT_EQ(runText(folder, "lines held").errors, "zp: held: is in use by another program; try again when that has ended\n");
  std::fclose(held);
}
