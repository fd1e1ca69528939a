// Correlations as numbers and pictures: zp store eval and plot.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <utility>

#include <nlohmann/json.hpp>

#include "tests/tools/store_fixture.h"

namespace {

using Json = nlohmann::json;

struct Published {
  char const * column;
  int id;
  double at[3];  // K
  double values[3];
  double tolerance;  // of the values
};

class Curves : public StoreTool {
 protected:
  std::vector<double> Eval(int id, std::string const & property, std::string const & temperatures)
  {
    ProgramRun const run = Zp("eval a " + std::to_string(id) + " " + property + " " + temperatures + " --json");
    std::vector<double> values;
    if (run.out.empty()) return values;
    Json const result = Json::parse(run.out);
    for (Json const & point : result["values"]) values.push_back(point["value"].is_null() ? NAN : double{point["value"]});
    return values;
  }

  void ExpectPublished(Published const & published)
  {
    std::string temperatures;
    for (double const t : published.at) temperatures += Json(t).dump() + " ";  // with a point in any locale
    std::vector<double> const values = Eval(published.id, published.column, temperatures);
    ASSERT_EQ(values.size(), 3U) << published.column << " of " << published.id;
    for (size_t i = 0; i < 3; ++i) {
      EXPECT_NEAR(values[i] / published.values[i], 1, published.tolerance)
          << published.column << " of " << published.id << " at " << published.at[i];
    }
  }

  void ImportMany(int count)
  {
    std::string table = "id,name,tc_K,tm_K,rho_liq_eq,rho_liq_A,rho_liq_B,sigma_eq,sigma_A,sigma_B\n";
    for (int i = 1; i <= count; ++i) {
      std::string const id = std::to_string(i);
      table += id + "," + (i == 2 ? std::string(100, 'W') : "Name " + id) + ",400,200,2," + id + ",1,2," + id + ",2\n";
    }
    m_Folder.Write("many.csv", table);
    ASSERT_EQ(Zp("import a many.csv").status, 0);
  }
};

// Of each line of a path the steps from the first place, as text; "24 0" is a legend's sample of a curve.
std::string stepsOf(std::string const & path)
{
  std::istringstream words(path.substr(path.find(" d=\"M ") + 6));
  double firstX = 0, firstY = 0, x = 0, y = 0;
  std::ostringstream steps;
  words >> firstX >> firstY;
  for (std::string letter; words >> letter >> x >> y;) steps << (steps.tellp() > 0 ? " " : "") << x - firstX << " " << y - firstY;
  return steps.str();
}

// Saturated densities, in mass, and pressures of water, methane and nitrogen: NIST Chemistry WebBook, fluid properties. Ethanol:
// CRC Handbook of Chemistry and Physics. Ideal gas heat capacities: NIST-JANAF tables; ethanol: TRC tables.
TEST_F(Curves, OfTheExamplesAreThePublishedOnes)
{
  ASSERT_EQ(Zp("import a " ZP_SOURCE_DIR "/examples/components.csv").status, 0);
  for (Published const & published : {
           Published{"rho_liq", 4, {300, 350, 400}, {996.51 / 18.0153, 973.70 / 18.0153, 937.49 / 18.0153}, 0.01},
           Published{"rho_liq", 7, {100, 120, 150}, {438.89 / 16.0428, 409.90 / 16.0428, 357.90 / 16.0428}, 0.01},
           Published{"rho_liq", 17, {293.15, 313.15, 333.15}, {789.4 / 46.069, 772.2 / 46.069, 754.1 / 46.069}, 0.01},
           Published{"rho_liq", 1, {70, 80, 100}, {838.51 / 28.0134, 793.94 / 28.0134, 688.95 / 28.0134}, 0.01},
           Published{"antoine", 4, {350, 373.15, 400}, {41682, 101420, 245770}, 0.02},
           Published{"antoine", 7, {100, 120, 150}, {34376, 191430, 1.0400e6}, 0.04},
           Published{"antoine", 17, {293.15, 313.15, 333.15}, {5850, 17900, 47000}, 0.02},
           Published{"antoine", 1, {70, 80, 100}, {38545, 136870, 778270}, 0.02},
           Published{"cp_ig", 4, {300, 500, 1000}, {33596, 35226, 41268}, 0.03},
           Published{"cp_ig", 7, {300, 500, 1000}, {35708, 46342, 71795}, 0.03},
           Published{"cp_ig", 17, {300, 500, 1000}, {65700, 95300, 141500}, 0.03},
           Published{"cp_ig", 1, {300, 500, 1000}, {29125, 29580, 32697}, 0.003},
       })
    ExpectPublished(published);
}

// Coefficients of Perry's Chemical Engineers' Handbook, 8th edition, section 2, against the values of the NIST Chemistry WebBook.
TEST_F(Curves, OfTheDesignInstitutesFormsAreThePublishedOnes)
{
  m_Folder.Write(
      "in.csv",
      "id,tc_K,p_vap_eq,p_vap_A,p_vap_B,p_vap_C,p_vap_D,p_vap_E,cp_liq_eq,cp_liq_A,cp_liq_B,cp_liq_C,cp_liq_D,cp_liq_E,"
      "mu_vap_eq,mu_vap_A,mu_vap_B,mu_vap_C,h_vap_eq,h_vap_A,h_vap_B,h_vap_C,h_vap_D,rho_liq_eq,rho_liq_A,rho_liq_B,"
      "rho_liq_C,rho_liq_D,rho_liq_E,k_vap_eq,k_vap_A,k_vap_B,k_vap_C,k_vap_D,k_vap_E\n"
      "4,647.096,101,73.649,-7258.2,-7.3037,4.1653e-6,2,100,276370,-2090.1,8.125,-0.014116,9.3701e-6,,,,,"
      "106,52053000,0.3199,-0.212,0.25795,116,17.863,58.606,-95.396,213.89,-141.26,107,33363,26790,2610.5,8896,1169\n"
      "7,190.564,101,39.205,-1324.4,-3.4366,3.1019e-5,2,114,65.708,38883,-257.95,614.07,,,,,,,,,,,,,,,,,107,33298,79933,"
      "2086.9,41602,991.96\n"
      "17,514,101,73.304,-7122.3,-7.1424,2.8853e-6,2,,,,,,,,,,,,,,,,,,,,,,107,49200,145770,1662.8,93900,744.7\n"
      "1,126.2,101,58.282,-1084.1,-8.3144,0.044127,1,,,,,,,102,6.5592e-7,0.6081,54.714,,,,,,,,,,,,107,29105,8614.9,1701.6,"
      "103.47,909.79\n");
  ProgramRun const imported = Zp("import a in.csv");
  ASSERT_EQ(imported.status, 0) << imported.err;
  for (Published const & published : {
           Published{"p_vap", 4, {300, 350, 400}, {3536.8, 41682, 245770}, 0.003},
           Published{"p_vap", 7, {100, 120, 150}, {34376, 191430, 1.0400e6}, 0.002},
           Published{"p_vap", 17, {298.15, 313.15, 333.15}, {7870, 17900, 47000}, 0.01},
           Published{"p_vap", 1, {70, 80, 100}, {38545, 136870, 778270}, 0.001},
           Published{"h_vap", 4, {300, 373.15, 500}, {2437.3e3 * 18.0153, 2256.4e3 * 18.0153, 1827.3e3 * 18.0153}, 0.005},
           Published{"rho_liq", 4, {300, 350, 400}, {996.51 / 18.0153, 973.70 / 18.0153, 937.49 / 18.0153}, 0.005},
           Published{"cp_liq", 4, {300, 330, 350}, {4180.6 * 18.0153, 4185.0 * 18.0153, 4194.5 * 18.0153}, 0.005},
           Published{"cp_liq", 7, {100, 120, 150}, {3408 * 16.0428, 3593 * 16.0428, 4070 * 16.0428}, 0.02},
           Published{"mu_vap", 1, {250, 300, 400}, {15.43e-6, 17.89e-6, 22.22e-6}, 0.02},
           Published{"k_vap", 4, {300, 500, 1000}, {33596, 35226, 41268}, 0.001},
           Published{"k_vap", 7, {300, 500, 1000}, {35708, 46342, 71795}, 0.02},
           Published{"k_vap", 1, {300, 500, 1000}, {29125, 29580, 32697}, 0.001},
       })
    ExpectPublished(published);
}

// The other forms at 2 K with the coefficients 0.5, 0.3, 0.2, 0.1 and 0.05, reckoned elsewhere.
TEST_F(Curves, KnowEachForm)
{
  struct Row {
    int equation;
    double value;
  };
  Row const rows[] = {{1, 0.5},      {2, 1.1},      {3, 1.9},        {4, 2.7},        {5, 3.5},
                      {11, 1.64872}, {12, 3.00417}, {13, 6.68589},   {14, 14.8797},   {15, 33.1155},
                      {16, 2.617},   {17, 4.98169}, {103, 0.748931}, {104, 0.675488}, {115, 3.32387}};
  std::string table = "id,sigma_eq,sigma_A,sigma_B,sigma_C,sigma_D,sigma_E\n";
  for (Row const & row : rows)
    table += std::to_string(row.equation) + "," + std::to_string(row.equation) + ",0.5,0.3,0.2,0.1,0.05\n";
  m_Folder.Write("in.csv", table);
  ASSERT_EQ(Zp("import a in.csv").status, 0);
  for (Row const & row : rows) {
    std::vector<double> const values = Eval(row.equation, "sigma", "2");
    ASSERT_EQ(values.size(), 1U) << row.equation;
    EXPECT_NEAR(values[0] / row.value, 1, 1e-5) << row.equation;
  }
}

TEST_F(Curves, EndWhereTheirPhaseDoes)
{
  ASSERT_EQ(
      Zp("import a -",
         "id,tm_K,tc_K,p_vap_eq,p_vap_A,h_vap_eq,h_vap_A,mu_vap_eq,mu_vap_A,k_vap_eq,k_vap_A,rho_liq_eq,rho_liq_A,rho_sol_eq,"
         "rho_sol_A,cp_ig_A\n1,270,540,100,1,100,1,100,1,100,1,100,1,100,1,1\n")
          .status,
      0);
  struct End {
    char const * property;
    char const * range;
  };
  for (End const & end : {End{"p_vap", "inside is 270 to 540 K\n"}, End{"h_vap", "inside is 270 to 540 K\n"},
                          End{"rho_liq", "inside is 270 to 540 K\n"}, End{"rho_sol", "inside is 0 to 270 K\n"}, End{"mu_vap", ""},
                          End{"k_vap", ""}, End{"cp_ig", ""}}) {
    std::string const table = Zp(std::string("eval a 1 ") + end.property + " 300").out;
    size_t const at = table.find("inside is");
    EXPECT_EQ(at == std::string::npos ? "" : table.substr(at), end.range) << end.property << "\n" << table;
  }
}

// Far below its melting point the form for water's vapour pressure runs to 1e280 Pa, and above the critical point it goes on.
TEST_F(Curves, LeaveTheAxisToWhatIsInside)
{
  ASSERT_EQ(Zp("import a " ZP_SOURCE_DIR "/examples/components.csv").status, 0);
  for (char const * const arguments : {"plot a 3,4 --property antoine", "plot a 4 --property antoine --from 10 --to 900"}) {
    std::string const plot = Zp(arguments).out;
    EXPECT_NE(plot.find("10000 |"), std::string::npos) << plot;
    EXPECT_NE(plot.find("...."), std::string::npos) << plot;
    EXPECT_EQ(plot.find("e+2"), std::string::npos) << plot;
  }
}

TEST_F(Curves, FitIntoANarrowTerminal)
{
  ASSERT_EQ(Zp("import a " ZP_SOURCE_DIR "/examples/components.csv").status, 0);
  std::string const plot = "stty cols 50; " + ZpProgram() + " store plot a 4 --property antoine";
  std::string const inTerminal =
      "cd " + m_Folder.Path().string() + " && script -qec '" + plot + "' /dev/null >plot.txt </dev/null";
  ASSERT_EQ(std::system(inTerminal.c_str()), 0);
  std::istringstream lines(m_Folder.Read("plot.txt"));
  size_t widest = 0;
  for (std::string line; std::getline(lines, line);) widest = std::max(widest, line.find_last_not_of('\r') + 1);
  EXPECT_EQ(widest, 50U);
}

std::string rounded(std::pair<double, double> const & place)
{
  return std::to_string(std::lround(place.first)) + " " + std::to_string(std::lround(place.second));
}

TEST_F(Curves, AreToldApartHoweverManyTheyAre)
{
  ImportMany(80);
  std::string const plot = Zp("plot a 1-80 --property rho_liq --from 100 --to 300 --term --png one.png").out;
  std::set<char> marks;
  for (int i = 1; i <= 62; ++i) {
    size_t const name = plot.find(i == 2 ? "  WW" : "  Name " + std::to_string(i) + "\n");
    ASSERT_NE(name, std::string::npos) << i;
    EXPECT_TRUE(marks.insert(plot[name - 1]).second) << plot;
  }
  for (std::string const & line :
       {" +  " + std::string(61, 'W') + "...\n", std::string(" *  Name 63\n"), std::string(" .  outside of the known range\n"),
        std::string(" marks repeat after 62 names\n")})
    EXPECT_NE(plot.find(line), std::string::npos) << line << plot;

  ASSERT_EQ(Zp("plot a 1-80 --property rho_liq --property sigma --from 100 --to 300 --svg two.svg").status, 0);
  constexpr int height = 754;
  EXPECT_EQ(m_Folder.Read("one.png").substr(20, 4), std::string({0, 0, height >> 8, static_cast<char>(height & 0xFF)}));
  std::string const svg = m_Folder.Read("two.svg");
  EXPECT_NE(svg.find("viewBox=\"0 0 860 1508\""), std::string::npos);
  std::istringstream lines(svg);
  std::vector<std::string> styles;
  for (std::string line, former; std::getline(lines, line); former = line) {
    bool const hasSample = former.find(";stroke-width:1.8;") != std::string::npos && stepsOf(former) == "24 0";
    bool const hasMark = line.find(";stroke-width:1.2;") != std::string::npos;
    if (hasSample) styles.push_back(former.substr(0, former.find(" d=")) + (hasMark ? stepsOf(line) : ""));
  }
  ASSERT_EQ(styles.size(), 160U);
  EXPECT_EQ(std::set<std::string>(styles.begin(), styles.begin() + 70).size(), 70U);
  EXPECT_EQ(styles[70], styles[0]);
  for (size_t at = svg.find("<use "); at != std::string::npos; at = svg.find("<use ", at + 1)) {
    size_t const x = svg.find(" x=\"", at) + 4;
    size_t const y = svg.find(" y=\"", at) + 4;
    EXPECT_LT(std::stoi(svg.substr(x, 6)), 852) << svg.substr(at, 60);
    EXPECT_LT(std::stoi(svg.substr(y, 6)), 2 * height - 8) << svg.substr(at, 60);
  }
}

// What stands behind the one text and in front of the other, or nothing.
std::string between(std::string const & line, std::string_view before, char behind)
{
  size_t const begin = line.find(before);
  if (begin == std::string::npos) return {};
  return line.substr(begin + before.size(), line.find(behind, begin + before.size()) - begin - before.size());
}

// What of a picture doesn't hang on the machine's fonts: of each line its looks, its first place and its last, and of each text
// its colour and its baseline.
std::string outlineOf(std::string const & svg)
{
  std::istringstream lines(svg.substr(svg.find("</defs>")));
  std::string outline, textColor;
  for (std::string each; std::getline(lines, each);) {
    if (each.starts_with("<path style=\"fill:none;stroke-width:")) {
      std::istringstream words(between(each, " d=\"M ", '"'));
      std::vector<std::pair<double, double>> places;
      double x = 0, y = 0;
      for (std::string letter; words >> x >> y; words >> letter) places.emplace_back(x, y);
      bool const isDashed = each.find("dasharray") != std::string::npos;
      outline += "line " + between(each, "stroke-width:", ';') + (isDashed ? " dashed " : " ") +
                 between(each, "stroke:rgb(", ')') + ": " + rounded(places.front()) + " to " + rounded(places.back()) + "\n";
    } else if (each.starts_with("<g style=\"fill:rgb(")) {
      textColor = between(each, "rgb(", ')');
    } else if (each.find("<use ") != std::string::npos && !textColor.empty()) {
      double const baseline = Json::parse(between(each, " y=\"", '"'));  // with a point in any locale
      outline += "text " + std::exchange(textColor, "") + ": at " + std::to_string(std::lround(baseline)) + "\n";
    }
  }
  return outline;
}

// Two components in two charts with linear and logarithmic axes, and as many as need a legend below. All is compared with
// plots.txt, beside which the picture was looked at.
TEST_F(Curves, LookAsTheyDid)
{
  std::string table =
      "id,name,tc_K,tm_K,rho_liq_eq,rho_liq_A,rho_liq_B,p_vap_eq,p_vap_A,p_vap_B,p_vap_C,p_vap_D,p_vap_E\n"
      "1,Flat,400,100,2,3,0.005,101,73.649,-7258.2,-7.3037,4.1653e-6,2\n"
      "2,Steep,500,,2,-8,0.03,101,60,-7258.2,-5,4.1653e-6,2\n";
  for (int id = 3; id <= 18; ++id) table += std::to_string(id) + ",N,400,200,2," + std::to_string(id) + ",0.01,,,,,,\n";
  ASSERT_EQ(Zp("import a -", table).status, 0);
  std::string plots = Zp("plot a 1,2 --property rho_liq --property p_vap --from 50.5 --to 500 --term --svg two.svg").out;
  plots += "\n" + outlineOf(m_Folder.Read("two.svg"));
  ASSERT_EQ(Zp("plot a 1-18 --property rho_liq --from 250 --to 350 --svg many.svg").status, 0);
  plots += "\n" + outlineOf(m_Folder.Read("many.svg"));
  std::ifstream expected(ZP_SOURCE_DIR "/tests/tools/plots.txt");
  EXPECT_EQ(plots, std::string(std::istreambuf_iterator<char>(expected), {}));
}

TEST_F(Curves, AreTablesAndPictures)
{
  m_Folder.Write("in.csv",
                 "id,name,tc_K,tm_K,rho_liq_eq,rho_liq_A,rho_liq_B,sigma_eq,sigma_A,cp_ig_A\n"
                 "1,Flat,400,100,2,0,0.5,777,1,9\n2,Steep,500,,2,0,1,,,\n3,,,,106,1,2,,,\n"
                 "4,,,,2,1,1e-18,,,\n5,,540,270,12,-2000,5,,,\n");
  ASSERT_EQ(Zp("import a in.csv").status, 0);
  EXPECT_EQ(Zp("eval a 1 rho_liq 50 100:120:10 400").out,
            "Flat: rho_liq = A + B T\n"
            "     T [K]  rho_liq [kmol/m3]\n"
            "        50                 25  outside\n"
            "       100                 50\n"
            "       110                 55\n"
            "       120                 60\n"
            "       400                200\n"
            "inside is 100 to 400 K\n");
  ProgramRun const plot = Zp("plot a 1 2 --property rho_liq --from 50.5 --to 600.5 --svg p.svg --png p.png --term");
  EXPECT_EQ(plot.status, 0) << plot.err;
  EXPECT_EQ(plot.out.substr(0, 24), "liquid density [kmol/m3]");
  for (char const * const line :
       {"        400 |", "             *  Flat\n", "             +  Steep\n", "200        300", "   ....", "+++ "})
    EXPECT_NE(plot.out.find(line), std::string::npos) << line << "\n" << plot.out;
  EXPECT_EQ(m_Folder.Read("p.png").substr(0, 4), "\x89PNG");
  std::string const svg = m_Folder.Read("p.svg");
  EXPECT_NE(svg.find("stroke-dasharray"), std::string::npos);
  EXPECT_NE(Zp("plot a 4").out.find("           1 |***"), std::string::npos) << "flat but for the last bit";
  EXPECT_NE(Zp("plot a 5 --from 100").out.find("1e-280 |                         ***"), std::string::npos)
      << "through more decades than a ratio can have";
  EXPECT_EQ(svg.find("NaN"), std::string::npos);

  std::string manyProperties;
  for (int i = 0; i < 27; ++i) manyProperties += " --property cp_ig";
  struct Refusal {
    std::string arguments;
    int status;
    char const * says;
  };
  for (Refusal const & refusal : {
           Refusal{"eval a 1 rho 300", 2, "zp: rho: is no property with a curve; there are antoine, cp_ig, rho_liq"},
           Refusal{"eval a 2 sigma 300", 1, "record 2: has no sigma; it has rho_liq"},
           Refusal{"eval a 1 sigma 300", 1, "record 1: sigma has equation 777, which isn't known here; known are 1, 2,"},
           Refusal{"eval a 3 rho_liq 300", 1, "needs the critical temperature, which the component doesn't tell"},
           Refusal{"eval a 1 rho_liq -5", 2, "-5: is no temperature in K above 0 and up to 100000, nor FROM:TO:STEP"},
           Refusal{"eval a 1 rho_liq nan", 2, "nan: is no temperature in K above 0"},
           Refusal{"eval a 1 rho_liq 1:2", 2, "1:2: is no temperature"},
           Refusal{"eval a 1 rho_liq 3:2:0.1", 2, "3:2:0.1: is a range that ends before it begins"},
           Refusal{"eval a 1 rho_liq 1:9e4:0.1", 2, "more than 100000 temperatures"},
           Refusal{"eval a 9 rho_liq 300", 1, "9"},
           Refusal{"plot a 2 --property sigma", 1, "record 2: has no sigma"},
           Refusal{"plot a 1 --from 300 --to 200", 2, "no temperatures lie between 300 and 200 K"},
           Refusal{"plot a 1 --from 300 --to 300.00000000000006", 2, "no temperatures lie between 300 and 300 K"},
           Refusal{"plot a 1 --from 0", 2, "--from: 0: is no temperature in K above 0 and up to 100000;"},
           Refusal{"plot a 1 --from nan", 2, "--from: nan: is no temperature"},
           Refusal{"plot a 1 --to inf", 2, "--to: inf: is no temperature"},
           Refusal{"plot a 1" + manyProperties + " --png p.png", 2, "the picture would be 10260 points high, more than 10000"},
           Refusal{"plot a 1 --png a.SR", 2, "is a file of the store itself"},
           Refusal{"plot a 1 --svg p.svg --png ./p.svg", 2, "./p.svg: would be written twice"},
           Refusal{"plot a 1 --png - --term", 2, "standard output: would be written twice"},
           Refusal{"plot a 1 --svg ''", 2, "--svg: a file must be named"},
           Refusal{"map a --svg - --json", 2, "standard output: would be written twice"},
       }) {
    ProgramRun const run = Zp(refusal.arguments);
    EXPECT_EQ(run.status, refusal.status) << refusal.arguments;
    EXPECT_NE(run.err.find(refusal.says), std::string::npos) << refusal.arguments << "\n" << run.err;
  }
  ProgramRun const partly = Zp("plot a 1");
  EXPECT_EQ(partly.status, 0);
  EXPECT_NE(partly.err.find("sigma has equation 777, which isn't known here"), std::string::npos);
  EXPECT_NE(partly.out.find("ideal gas heat capacity [J/(kmol K)]\n"), std::string::npos);
}

}  // namespace
