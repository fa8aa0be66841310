// Paths of 60 characters beside QDir and QString, OCCT's OSD_Path and std::filesystem::path, on the
// same texts, each in the text type of its library.

#include "kovabase/files/KOVAFilePath.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <string>

#ifdef KOVA_HAS_QT
#include <QDir>
#include <QFileInfo>
#include <QString>
#endif
#ifdef KOVA_HAS_OCCT
#include <OSD_Path.hxx>
#include <TCollection_AsciiString.hxx>
#endif

namespace {

constexpr std::size_t kPaths = 64;

/// A path of 60 characters and its two halves, in one library's text type.
template <class Text>
struct Sample {
  Text path;
  Text directory;
  Text name;
};

template <class Text, class Make>
std::array<Sample<Text>, kPaths> makeSamples(const Make& make) {
  std::array<Sample<Text>, kPaths> samples;
  for (std::size_t i = 0; i < kPaths; ++i) {
    char directory[64];
    char name[64];
    // Different places for the separators, so that nobody learns them by heart.
    const int length = std::snprintf(directory, sizeof directory, "/home/%.*s/assembly_%03zu/%.*s",
                                     1 + static_cast<int>(i % 5), "names", i,
                                     6 + static_cast<int>(i % 7), "parts and more");
    std::snprintf(name, sizeof name, "%.*s.stp", 60 - length - 5,
                  "bracket_left_bolted_to_the_frame_of_the_rear_door");
    samples[i] = {make(std::string(directory) + "/" + name), make(directory), make(name)};
  }
  return samples;
}

template <class Samples, class Work>
void run(const std::string& name, const Samples& samples, const Work& work) {
  benchmark::RegisterBenchmark(name.c_str(), [&samples, work](benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) work(samples[i++ % kPaths]);
  });
}

void registerOurs() {
  using Ours = Sample<KOVAString>;
  static const auto samples =
      makeSamples<KOVAString>([](const std::string& text) { return KOVAString(text.c_str()); });
  static const auto paths = [] {
    std::array<KOVAFilePath, kPaths> result;
    for (std::size_t i = 0; i < kPaths; ++i) result[i] = KOVAFilePath(samples[i].path);
    return result;
  }();
  run("path normalise/KOVAFilePath", samples, [](const Ours& sample) {
    const KOVAFilePath path(sample.path);
    benchmark::DoNotOptimize(&path);
  });
  run("path join/KOVAFilePath", samples, [](const Ours& sample) {
    const KOVAFilePath path(sample.directory, sample.name);
    benchmark::DoNotOptimize(&path);
  });
  run("path split/KOVAFilePath", paths, [](const KOVAFilePath& path) {
    const KOVAString directory = path.GetDirectory();
    const KOVAString name = path.GetName();
    const KOVAString extension = path.GetLastExtension();
    benchmark::DoNotOptimize(&directory);
    benchmark::DoNotOptimize(&name);
    benchmark::DoNotOptimize(&extension);
  });
}

void registerStandard() {
  using Standard = Sample<std::string>;
  static const auto samples =
      makeSamples<std::string>([](const std::string& text) { return text; });
  static const auto paths = [] {
    std::array<std::filesystem::path, kPaths> result;
    for (std::size_t i = 0; i < kPaths; ++i) result[i] = samples[i].path;
    return result;
  }();
  run("path normalise/std::filesystem", samples, [](const Standard& sample) {
    const std::filesystem::path path = std::filesystem::path(sample.path).lexically_normal();
    benchmark::DoNotOptimize(&path);
  });
  run("path join/std::filesystem", samples, [](const Standard& sample) {
    const std::filesystem::path path = std::filesystem::path(sample.directory) / sample.name;
    benchmark::DoNotOptimize(&path);
  });
  run("path split/std::filesystem", paths, [](const std::filesystem::path& path) {
    const std::filesystem::path directory = path.parent_path();
    const std::filesystem::path name = path.filename();
    const std::filesystem::path extension = path.extension();
    benchmark::DoNotOptimize(&directory);
    benchmark::DoNotOptimize(&name);
    benchmark::DoNotOptimize(&extension);
  });
}

#ifdef KOVA_HAS_QT
void registerQt() {
  using Qt = Sample<QString>;
  static const auto samples =
      makeSamples<QString>([](const std::string& text) { return QString::fromUtf8(text.c_str()); });
  run("path normalise/QDir", samples, [](const Qt& sample) {
    const QString path = QDir::cleanPath(sample.path);
    benchmark::DoNotOptimize(&path);
  });
  run("path normalise/QString", samples, [](const Qt& sample) {
    QString path = sample.path;
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));
    benchmark::DoNotOptimize(&path);
  });
  run("path join/QDir", samples, [](const Qt& sample) {
    const QString path = QDir::cleanPath(sample.directory + QLatin1Char('/') + sample.name);
    benchmark::DoNotOptimize(&path);
  });
  run("path join/QString", samples, [](const Qt& sample) {
    QString path = sample.directory + QLatin1Char('/') + sample.name;
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));
    benchmark::DoNotOptimize(&path);
  });
  run("path split/QFileInfo", samples, [](const Qt& sample) {
    const QFileInfo info(sample.path);
    const QString directory = info.path();
    const QString name = info.fileName();
    const QString extension = info.suffix();
    benchmark::DoNotOptimize(&directory);
    benchmark::DoNotOptimize(&name);
    benchmark::DoNotOptimize(&extension);
  });
  run("path split/QString", samples, [](const Qt& sample) {
    const auto separator = sample.path.lastIndexOf(QLatin1Char('/'));
    const QString directory = sample.path.left(separator);
    const QString name = sample.path.mid(separator + 1);
    const QString extension = name.mid(name.lastIndexOf(QLatin1Char('.')) + 1);
    benchmark::DoNotOptimize(&directory);
    benchmark::DoNotOptimize(&name);
    benchmark::DoNotOptimize(&extension);
  });
}
#endif

#ifdef KOVA_HAS_OCCT
void registerOcct() {
  using Occt = Sample<TCollection_AsciiString>;
  static const auto samples = makeSamples<TCollection_AsciiString>(
      [](const std::string& text) { return TCollection_AsciiString(text.c_str()); });
  run("path normalise/OSD_Path", samples, [](const Occt& sample) {
    TCollection_AsciiString path;
    OSD_Path(sample.path).SystemName(path);
    benchmark::DoNotOptimize(&path);
  });
  run("path join/OSD_Path", samples, [](const Occt& sample) {
    TCollection_AsciiString path;
    OSD_Path(sample.directory + "/" + sample.name).SystemName(path);
    benchmark::DoNotOptimize(&path);
  });
  run("path split/OSD_Path", samples, [](const Occt& sample) {
    const OSD_Path path(sample.path);
    const TCollection_AsciiString directory = path.Trek();
    const TCollection_AsciiString name = path.Name();
    const TCollection_AsciiString extension = path.Extension();
    benchmark::DoNotOptimize(&directory);
    benchmark::DoNotOptimize(&name);
    benchmark::DoNotOptimize(&extension);
  });
}
#endif

}  // namespace

int main(int argc, char** argv) {
  registerOurs();
  registerStandard();
#ifdef KOVA_HAS_QT
  registerQt();
#endif
#ifdef KOVA_HAS_OCCT
  registerOcct();
#endif
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
