#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/options/KOVAOptionCatalogue.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace {

std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

TEST(KOVAOptionCatalogue, PageTellsWhatTheTableTells) {
  KOVAStringOutputStream stream;
  KOVAStreamFormatter formatter(&stream);
  KOVAOptionCatalogue::WriteMarkdown(formatter);
  EXPECT_EQ(contentsOf(KOVA_SOURCES "/docs/options-and-variables.md"), stream.GetBytes())
      << "Write the page anew: kova_options_page docs/options-and-variables.md";
}

TEST(KOVAOptionCatalogue, NamesEveryVariableThatIsRead) {
  std::set<std::string> known;
  for (const auto& variable : KOVAOptionCatalogue::GetVariables()) known.insert(variable.name);
  EXPECT_TRUE(std::ranges::is_sorted(
      KOVAOptionCatalogue::GetVariables(),
      [](const auto& a, const auto& b) { return std::strcmp(a.name, b.name) < 0; }));

  // Every text literal that is asked for somewhere, and none that nobody asks for.
  std::set<std::string> asked{"PATH"};
  const std::regex reading(R"re((?:GetVariable|readVariable|getenv)\(\s*"([^"]+)")re");
  for (const char* folder : {"kovabase", "apps", "translators"}) {
    const std::filesystem::path root = std::filesystem::path(KOVA_SOURCES) / folder;
    for (const auto& file : std::filesystem::recursive_directory_iterator(root)) {
      if (file.path().extension() != ".cpp" && file.path().extension() != ".h") continue;
      const std::string text = contentsOf(file.path());
      for (std::sregex_iterator found(text.begin(), text.end(), reading), end; found != end;
           ++found) {
        asked.insert((*found)[1]);
      }
    }
  }
  EXPECT_EQ(known, asked);
}
