// The stream formatter beside the standard library's and Qt's text streams, all into memory that is
// reused from round to round.

#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/io/KOVAStringOutputStream.h"
#include "kovabase/strings/KOVAString.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#ifdef KOVA_HAS_QT
#include <QString>
#include <QTextStream>
#endif

namespace {

constexpr int kPieces = 1000;

std::vector<double> makeNumbers() {
  std::vector<double> numbers;
  std::uint64_t state = 1;
  for (int i = 0; i < kPieces; ++i) {
    state = state * 6364136223846793005U + 1442695040888963407U;
    numbers.push_back(static_cast<double>(state >> 11) / 1e12);
  }
  return numbers;
}

const std::vector<double>& numbers() {
  static const std::vector<double> all = makeNumbers();
  return all;
}

struct Ours {
  void start() { stream.Clear(); }
  std::size_t end() { return stream.GetByteCount(); }
  KOVAStringOutputStream stream;
  KOVAStreamFormatter out{&stream};
  void endLine() { out << KOVAEndLine; }
};

struct Standard {
  void start() { out.str(std::string()); }
  std::size_t end() { return static_cast<std::size_t>(out.tellp()); }
  std::ostringstream out;
  // The doubles must read back here, too.
  Standard() { out.precision(17); }
  void endLine() { out << '\n'; }
};

#ifdef KOVA_HAS_QT
struct Qt {
  void start() {
    out.flush();
    text.clear();
  }
  std::size_t end() {
    out.flush();
    return static_cast<std::size_t>(text.size());
  }
  QByteArray text;
  QTextStream out{&text};
  Qt() { out.setRealNumberPrecision(17); }
  void endLine() { out << '\n'; }
};
#endif

template <class Stream>
void writeTexts(benchmark::State& state) {
  Stream stream;
  for (auto _ : state) {
    stream.start();
    for (int i = 0; i < kPieces; ++i) stream.out << "Message : ";
    benchmark::DoNotOptimize(stream.end());
  }
  state.SetItemsProcessed(state.iterations() * kPieces);
}

template <class Stream>
void writeIntegers(benchmark::State& state) {
  Stream stream;
  for (auto _ : state) {
    stream.start();
    for (int i = 0; i < kPieces; ++i) stream.out << i * 1237;
    benchmark::DoNotOptimize(stream.end());
  }
  state.SetItemsProcessed(state.iterations() * kPieces);
}

template <class Stream>
void writeDoubles(benchmark::State& state) {
  Stream stream;
  for (auto _ : state) {
    stream.start();
    for (const double number : numbers()) stream.out << number;
    benchmark::DoNotOptimize(stream.end());
  }
  state.SetItemsProcessed(state.iterations() * kPieces);
}

// What an event's description is like.
template <class Stream>
void writeLines(benchmark::State& state) {
  Stream stream;
  for (auto _ : state) {
    stream.start();
    for (int i = 0; i < kPieces; ++i) {
      stream.out << "Model " << i << " : the face " << i * 31 << " has no loop";
      stream.endLine();
    }
    benchmark::DoNotOptimize(stream.end());
  }
  state.SetItemsProcessed(state.iterations() * kPieces);
}

void writeStrings(benchmark::State& state) {
  Ours stream;
  const KOVAString text("a part name of the usual length");
  for (auto _ : state) {
    stream.start();
    for (int i = 0; i < kPieces; ++i) stream.out << text;
    benchmark::DoNotOptimize(stream.end());
  }
  state.SetItemsProcessed(state.iterations() * kPieces);
}

BENCHMARK(writeTexts<Ours>)->Name("write 1000 texts/KOVAStreamFormatter");
BENCHMARK(writeTexts<Standard>)->Name("write 1000 texts/std::ostringstream");
BENCHMARK(writeIntegers<Ours>)->Name("write 1000 ints/KOVAStreamFormatter");
BENCHMARK(writeIntegers<Standard>)->Name("write 1000 ints/std::ostringstream");
BENCHMARK(writeDoubles<Ours>)->Name("write 1000 doubles/KOVAStreamFormatter");
BENCHMARK(writeDoubles<Standard>)->Name("write 1000 doubles/std::ostringstream");
BENCHMARK(writeLines<Ours>)->Name("write 1000 lines/KOVAStreamFormatter");
BENCHMARK(writeLines<Standard>)->Name("write 1000 lines/std::ostringstream");
BENCHMARK(writeStrings)->Name("write 1000 strings/KOVAStreamFormatter");

#ifdef KOVA_HAS_QT
void writeQtStrings(benchmark::State& state) {
  Qt stream;
  const QString text = QStringLiteral("a part name of the usual length");
  for (auto _ : state) {
    stream.start();
    for (int i = 0; i < kPieces; ++i) stream.out << text;
    benchmark::DoNotOptimize(stream.end());
  }
  state.SetItemsProcessed(state.iterations() * kPieces);
}

BENCHMARK(writeTexts<Qt>)->Name("write 1000 texts/QTextStream");
BENCHMARK(writeIntegers<Qt>)->Name("write 1000 ints/QTextStream");
BENCHMARK(writeDoubles<Qt>)->Name("write 1000 doubles/QTextStream");
BENCHMARK(writeLines<Qt>)->Name("write 1000 lines/QTextStream");
BENCHMARK(writeQtStrings)->Name("write 1000 strings/QTextStream");
#endif

}  // namespace

BENCHMARK_MAIN();
