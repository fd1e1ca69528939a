// Drawings of real metafiles in readers that others wrote. Where a reader isn't installed its test is skipped.

#include <gtest/gtest.h>

#include <cstdlib>

#include <nlohmann/json.hpp>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"
#include "tests/tools/metafile_bytes.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class DrawingReaders : public testing::Test {
 protected:
  void SetUp() override
  {
    ProgramRun const run = RunZp(m_Folder.Path(), "dxf --json --stats --to . '" ZP_SOURCE_DIR "/tests/metafiles'");
    ASSERT_EQ(run.status, 0) << run.err;
    m_Files = Json::parse(run.out)["files"];
    ASSERT_GE(m_Files.size(), 3u);
  }

  // What a shell command prints on its standard output in the folder; its status goes to m_nStatus.
  std::string Run(std::string const & command)
  {
    m_nStatus = std::system(("cd '" + m_Folder.Path().string() + "' && { " + command + "; } >printed 2>errors").c_str());
    return m_Folder.Read("printed");
  }

  bool Works(std::string const & command) { return Run(command), m_nStatus == 0; }

  // The counts that each file of ours must show, as "name lines points circles arcs texts".
  std::string Expected() const
  {
    std::string all;
    for (Json const & file : m_Files) {
      all += fs::path(file["output"].get<std::string>()).filename().string();
      for (char const * const kind : {"lines", "points", "circles", "arcs", "texts"})
        all += " " + std::to_string(file["entities"][kind].get<int>());
      all += "\n";
    }
    return all;
  }

  TempFolder m_Folder;
  Json m_Files;
  int m_nStatus = 0;
};

constexpr char const * ezdxfScript = R"(
import ezdxf, glob
for name in sorted(glob.glob('*.dxf')):
    drawing = ezdxf.readfile(name)
    audit = drawing.audit()
    assert drawing.dxfversion == 'AC1009' and not audit.errors and not audit.fixes, (name, audit.errors, audit.fixes)
    for entity in drawing.modelspace():
        assert entity.dxf.layer in drawing.layers and entity.dxf.linetype in drawing.linetypes, name
    kinds = [entity.dxftype() for entity in drawing.modelspace()]
    print(name, *[kinds.count(kind) for kind in ('LINE', 'POINT', 'CIRCLE', 'ARC', 'TEXT')])
)";

constexpr char const * npmScript = R"(
const fs = require('fs');
const DxfParser = require('dxf-parser');
const dxf = require('dxf');
for (const name of fs.readdirSync('.').filter(name => name.endsWith('.dxf')).sort()) {
  const text = fs.readFileSync(name, 'latin1');
  const count = entities => ['LINE', 'POINT', 'CIRCLE', 'ARC', 'TEXT'].map(kind => entities.filter(e => e.type == kind).length);
  const first = count(new (DxfParser.default || DxfParser.DxfParser || DxfParser)().parseSync(text).entities).join(' ');
  const second = count(new dxf.Helper(text).parsed.entities).join(' ');
  if (first != second) throw new Error(name + ': ' + first + ' and ' + second);
  console.log(name, first);
}
)";

}  // namespace

TEST_F(DrawingReaders, EzdxfFindsNoFault)
{
  if (!Works("python3 -c 'import ezdxf'") && !Works("/usr/bin/python3 -c 'import ezdxf'"))
    GTEST_SKIP() << "no ezdxf (python3-ezdxf)";
  m_Folder.Write("look.py", ezdxfScript);
  std::string const python = Works("python3 -c 'import ezdxf'") ? "python3" : "/usr/bin/python3";
  EXPECT_EQ(Run(python + " look.py"), Expected()) << m_Folder.Read("errors");
}

TEST_F(DrawingReaders, LibreCadDrawsEachOnAPage)
{
  if (!Works("command -v librecad")) GTEST_SKIP() << "no librecad";
  auto const pageOf = [this](std::string const & name) {
    Run("QT_QPA_PLATFORM=offscreen HOME=. timeout 50 librecad dxf2pdf -a -c " + name + ".dxf");
    return m_Folder.Has(name + ".pdf") ? m_Folder.Read(name + ".pdf") : "";
  };
  m_Folder.Write("nothing.wmf", MetafileBytes().Plain());
  ASSERT_EQ(RunZp(m_Folder.Path(), "dxf nothing.wmf nothing.dxf").status, 0);
  size_t const emptySize = pageOf("nothing").size();
  for (Json const & file : m_Files) {
    std::string const name = fs::path(file["output"].get<std::string>()).stem().string();
    std::string const page = pageOf(name);
    EXPECT_EQ(page.substr(0, 4), "%PDF") << name << m_Folder.Read("errors");
    bool const isEmpty = file["entities"] == Json{{"lines", 0}, {"points", 0}, {"circles", 0}, {"arcs", 0}, {"texts", 0}};
    EXPECT_EQ(page.size() > emptySize, !isEmpty) << name;
  }
}

TEST_F(DrawingReaders, NodePackagesSeeTheSameEntities)
{
  if (!Works("node -e \"require('dxf-parser'); require('dxf')\"")) GTEST_SKIP() << "no dxf-parser and dxf on NODE_PATH";
  m_Folder.Write("look.js", npmScript);
  EXPECT_EQ(Run("node look.js"), Expected()) << m_Folder.Read("errors");
}
