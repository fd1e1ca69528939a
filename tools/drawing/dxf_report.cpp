// Reports on drawings, and writing their pictures.

#include "tools/drawing/dxf_report.h"

#include <cstring>
#include <memory>

#include <fmt/format.h>

#include "tools/input_file.h"
#include "tools/program.h"
#include "tools/shown_text.h"

namespace {

constexpr std::array<char const *, dxfKinds> keys = {"lines", "points", "circles", "arcs", "texts"};

}  // namespace

DxfOpener OpenerOf(std::string const & file)
{
  return [file] {
    auto const input = std::make_shared<InputFile>(file);
    return [input](char * buffer, size_t size) { return input->Read(buffer, size); };
  };
}

DxfInspection::DxfInspection(std::string const & file) : m_Reader(OpenerOf(file)())
{
  m_Reader.Read([this](DxfEntity const & entity) { m_Cover.Add(entity); });
  m_Cover.AddFrame(m_Reader.GetFrame());
}

std::string DxfInspection::Counts() const
{
  std::string text;
  for (size_t kind = 0; kind < dxfKinds; ++kind) {
    unsigned long long const count = m_Reader.GetCount(static_cast<DxfKind>(kind));
    std::string const noun(keys[kind], std::strlen(keys[kind]) - 1);
    if (count > 0) text += (text.empty() ? "" : ", ") + Counted(count, noun);
  }
  return text.empty() ? "no entities" : text;
}

nlohmann::json DxfInspection::CountsAsJson() const
{
  nlohmann::json counts = nlohmann::json::object();
  for (size_t kind = 0; kind < dxfKinds; ++kind) counts[keys[kind]] = m_Reader.GetCount(static_cast<DxfKind>(kind));
  return counts;
}

void DxfInspection::PrintProblems(std::string const & name) const
{
  DxfProblems const & problems = m_Reader.GetProblems();
  for (DxfProblem const & problem : problems.GetKept())
    PrintShown(fmt::format("{}: line {}: {}\n", Visible(name), problem.line, problem.what));
  if (problems.GetCount() > problems.GetKept().size())
    PrintShown(fmt::format("{}: and {} more\n", Visible(name), problems.GetCount() - problems.GetKept().size()));
}

nlohmann::json DxfInspection::ProblemsAsJson() const
{
  nlohmann::json all = nlohmann::json::array();
  for (DxfProblem const & problem : m_Reader.GetProblems().GetKept())
    all.push_back({{"line", problem.line}, {"text", problem.what}});
  return all;
}

DxfPictures::DxfPictures(std::string const & file, DxfCover const & cover, PictureNames const & names)
{
  if (!names.svg.empty()) Draw(file, cover, PictureFormat::Svg, names.svg);
  if (!names.png.empty()) Draw(file, cover, PictureFormat::Png, names.png);
}

void DxfPictures::Draw(std::string const & file, DxfCover const & cover, PictureFormat format, std::string const & name)
{
  OutputFile & output = *m_Outputs.emplace_back(std::make_unique<OutputFile>(name));
  DrawDxf(OpenerOf(file), cover, format, [&output](std::string_view piece) { output.Write(piece); });
  output.Finish();
}

void DxfPictures::Replace()
{
  for (auto const & output : m_Outputs) output->Commit();
}
