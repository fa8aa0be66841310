// Settings beside maps of dotted names, variants and readers of configuration files, each in the
// text type of its library.
//
// 1,000 names are filed, half of two parts and half of three. The maps look a name up as it stands,
// case and all; where the name is not filed they try the names that fall back from it, as an option
// set does. The sets ignore case.

#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/options/KOVACfgFile.h"
#include "kovabase/options/KOVAOptionName.h"
#include "kovabase/options/KOVAOptions.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#ifdef KOVA_HAS_QT
#include <QString>
#include <QVariantMap>
#endif
#ifdef KOVA_HAS_ABSL
#include <absl/container/flat_hash_map.h>
#endif
#ifdef KOVA_HAS_BOOST
#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#endif

namespace {

using Value = std::variant<std::monostate, double, int, bool, std::string>;

constexpr std::size_t kNames = 1000;
constexpr int kSections = 100;
constexpr int kKeysPerSection = 1000;

// A dotted name; an empty middle part is left out.
struct Name {
  std::string first;
  std::string middle;
  std::string last;

  std::string text() const {
    return middle.empty() ? first + "." + last : first + "." + middle + "." + last;
  }
};

std::vector<Name> filedNames() {
  static const char* const kFirst[] = {"Step", "Stl", "Mesh", "Healing", "Export"};
  static const char* const kMiddle[] = {"Import", "Surfaces", "Curves", "Attributes"};
  std::vector<Name> names;
  for (std::size_t i = 0; i < kNames; ++i) {
    names.push_back(Name{kFirst[i % 5], i % 2 == 0 ? "" : kMiddle[i / 10 % 4],
                         "ToleranceOfKind" + std::to_string(i / 10)});
  }
  return names;
}

// Names that are not filed themselves; the names of two parts apply to them.
std::vector<Name> fallbackNames() {
  std::vector<Name> names;
  for (Name& name : filedNames()) {
    if (!name.middle.empty()) continue;
    name.middle = "Unfiled";
    names.push_back(name);
    names.push_back(name);
  }
  return names;
}

std::vector<Name> absentNames() {
  std::vector<Name> names = filedNames();
  for (Name& name : names) {
    name.last += "Absent";
    if (name.middle.empty()) name.middle = "Unfiled";
  }
  return names;
}

template <class Text, class Make>
std::vector<Text> texts(const std::vector<Name>& names, const Make& make) {
  std::vector<Text> result;
  for (const Name& name : names) result.push_back(make(name.text()));
  return result;
}

template <class Samples, class Work>
void run(const std::string& name, const Samples& samples, const Work& work) {
  const auto shared = std::make_shared<Samples>(samples);
  benchmark::RegisterBenchmark(name.c_str(), [shared, work](benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
      benchmark::DoNotOptimize(work((*shared)[i]));
      if (++i == shared->size()) i = 0;
    }
  });
}

// A map that falls back as an option set does: a.b.n, then a.n, *.b.n and n alone.
template <class Map>
const Value* findFallingBack(const Map& map, const std::string& name, std::string& buffer) {
  if (const auto found = map.find(name); found != map.end()) return &found->second;
  const std::size_t first = name.find('.');
  const std::size_t last = name.rfind('.');
  if (first != last) {
    buffer.assign(name, 0, first).append(name, last, std::string::npos);
    if (const auto found = map.find(buffer); found != map.end()) return &found->second;
    buffer.assign("*").append(name, first, std::string::npos);
    if (const auto found = map.find(buffer); found != map.end()) return &found->second;
  }
  buffer.assign(name, last + 1, std::string::npos);
  const auto found = map.find(buffer);
  return found != map.end() ? &found->second : nullptr;
}

template <class Map>
void registerMap(const std::string& who) {
  const auto plain = [](const std::string& text) { return text; };
  const auto map = std::make_shared<Map>();
  for (const std::string& name : texts<std::string>(filedNames(), plain)) (*map)[name] = 5;
  run("look up exact/" + who, texts<std::string>(filedNames(), plain),
      [map](const std::string& name) { return &map->find(name)->second; });
  const auto fallBack = [map](const std::string& name) {
    static std::string buffer;
    return findFallingBack(*map, name, buffer);
  };
  run("look up fallback/" + who, texts<std::string>(fallbackNames(), plain), fallBack);
  run("look up absent/" + who, texts<std::string>(absentNames(), plain), fallBack);
}

KOVAString ours(const std::string& text) { return KOVAString(text.c_str()); }

void registerSets() {
  const auto options = std::make_shared<KOVAOptions>();
  for (const KOVAString& name : texts<KOVAString>(filedNames(), ours)) options->AddOption(name, 5);
  const auto find = [options](const KOVAString& name) {
    KOVAOption* option = nullptr;
    options->GetOption(name, option);
    return option;
  };
  run("look up exact/KOVAOptions", texts<KOVAString>(filedNames(), ours), find);
  run("look up fallback/KOVAOptions", texts<KOVAString>(fallbackNames(), ours), find);
  run("look up absent/KOVAOptions", texts<KOVAString>(absentNames(), ours), find);

  registerMap<std::map<std::string, Value>>("std::map");
#ifdef KOVA_HAS_ABSL
  registerMap<absl::flat_hash_map<std::string, Value>>("absl::flat_hash_map");
#endif
#ifdef KOVA_HAS_QT
  const auto qt = [](const std::string& text) { return QString::fromStdString(text); };
  const auto map = std::make_shared<QVariantMap>();
  for (const QString& name : texts<QString>(filedNames(), qt)) (*map)[name] = 5;
  run("look up exact/QVariantMap", texts<QString>(filedNames(), qt),
      [map](const QString& name) { return &*map->constFind(name); });
#endif
}

void registerValues() {
  std::vector<KOVAValue> integers;
  std::vector<KOVAValue> numbers;
  std::vector<Value> peerIntegers;
  std::vector<Value> peerNumbers;
  // Few enough for the nearest cache: a value with its text is twice as large as a variant.
  for (int i = 0; i < 64; ++i) {
    const std::string text = std::to_string(i) + "." + std::to_string(7 * i);
    integers.emplace_back(i);
    peerIntegers.emplace_back(i);
    numbers.emplace_back(KOVAString(text.c_str()));
    peerNumbers.emplace_back(text);
  }
  run("read int/KOVAValue", integers, [](const KOVAValue& value) {
    int integer = 0;
    value.GetValue(integer);
    return integer;
  });
  run("read int/std::variant", peerIntegers,
      [](const Value& value) { return std::get<int>(value); });
  run("read double from text/KOVAValue", numbers, [](const KOVAValue& value) {
    double real = 0;
    value.GetValue(real);
    return real;
  });
  run("read double from text/std::variant", peerNumbers, [](const Value& value) {
    return std::strtod(std::get<std::string>(value).c_str(), nullptr);
  });
}

class TemporaryFile {
 public:
  TemporaryFile() : _path((std::filesystem::temp_directory_path() / "kova_settings_")) {
    _path = _path.string() + std::to_string(reinterpret_cast<std::uintptr_t>(this)) + ".ini";
    FILE* const stream = std::fopen(_path.c_str(), "w");
    if (stream == nullptr) {
      std::perror(_path.c_str());
      std::exit(1);
    }
    for (int section = 0; section < kSections; ++section) {
      std::fprintf(stream, "[Component%d]\n", section);
      for (int key = 0; key < kKeysPerSection; ++key) {
        std::fprintf(stream, "ToleranceOfKind%d = %d.%d\n", key, section, key);
      }
    }
    std::fclose(stream);
  }
  ~TemporaryFile() { std::filesystem::remove(_path); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  std::string path() const { return _path.string(); }

 private:
  std::filesystem::path _path;
};

template <class Work>
void runOnFile(const char* name, const std::string& path, const Work& work) {
  benchmark::RegisterBenchmark(name, [path, work](benchmark::State& state) {
    for (auto _ : state) work(path);
  })->Unit(benchmark::kMillisecond);
}

void registerFiles(const std::string& path) {
  runOnFile("load configuration/KOVACfgFile", path, [](const std::string& name) {
    KOVACfgFile file;
    if (file.Load(KOVAFilePath(KOVAString(name.c_str()))).IsFailure()) std::abort();
    benchmark::DoNotOptimize(&file);
  });
#ifdef KOVA_HAS_BOOST
  runOnFile("load configuration/boost::property_tree", path, [](const std::string& name) {
    boost::property_tree::ptree tree;
    boost::property_tree::read_ini(name, tree);
    benchmark::DoNotOptimize(&tree);
  });
#endif
}

void registerNames() {
  benchmark::RegisterBenchmark("declare 1,000 names/KOVAOptionName", [](benchmark::State& state) {
    const std::vector<KOVAString> names = texts<KOVAString>(filedNames(), ours);
    for (auto _ : state) {
      KOVAOptionName::_optionNames.clear();
      std::vector<KOVAOptionName> declared;
      declared.reserve(kNames);
      for (const KOVAString& name : names) declared.emplace_back(name);
      benchmark::DoNotOptimize(declared.data());
    }
    KOVAOptionName::_optionNames.clear();
  });

  static std::vector<KOVAOptionName> declared;
  static const auto declareOnce = [] {
    if (!declared.empty()) return;
    declared.reserve(kNames);
    for (const KOVAString& name : texts<KOVAString>(filedNames(), ours)) {
      declared.emplace_back(name);
    }
  };
  const auto runIsValid = [](const char* name, const std::vector<KOVAString>& asked) {
    benchmark::RegisterBenchmark(name, [asked](benchmark::State& state) {
      declareOnce();
      std::size_t i = 0;
      for (auto _ : state) {
        benchmark::DoNotOptimize(KOVAOptionName::IsValid(asked[i]).IsSuccess());
        if (++i == asked.size()) i = 0;
      }
    });
  };
  std::vector<KOVAString> wildcards;
  for (Name name : filedNames()) {
    name.first = "*";
    wildcards.push_back(ours(name.text()));
  }
  runIsValid("IsValid exact/KOVAOptionName", texts<KOVAString>(filedNames(), ours));
  runIsValid("IsValid wildcard/KOVAOptionName", wildcards);
  runIsValid("IsValid absent wildcard/KOVAOptionName",
             {ours("*.Import.Unknown"), ours("step.*.x")});
}

}  // namespace

int main(int argc, char** argv) {
  const TemporaryFile file;
  registerSets();
  registerValues();
  registerFiles(file.path());
  registerNames();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
