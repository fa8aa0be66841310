// The typed reads of the buffers beside other ways to the same numbers: 10,000,000 values in files
// that the system has cached. KOVA_BENCH_VALUES sets another number of them.

#include "kovabase/io/KOVADefaultBinaryBuffer.h"
#include "kovabase/io/KOVADefaultTxtBuffer.h"

#include <benchmark/benchmark.h>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>
#include <vector>

#ifdef KOVA_HAS_QT
#include <QDataStream>
#include <QFile>
#include <QString>
#endif
#ifdef KOVA_HAS_FAST_FLOAT
#include <fast_float/fast_float.h>
#endif

namespace {

int valueCount() {
  const char* const text = std::getenv("KOVA_BENCH_VALUES");
  const int count = text != nullptr ? std::atoi(text) : 0;
  return count > 0 ? count : 10'000'000;
}

const int kValues = valueCount();

template <class T>
using Word = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;

std::uint32_t swapped(std::uint32_t word) { return __builtin_bswap32(word); }
std::uint64_t swapped(std::uint64_t word) { return __builtin_bswap64(word); }

template <class T>
T fromBigEndian(const unsigned char* bytes) {
  Word<T> word;
  std::memcpy(&word, bytes, sizeof word);
  return std::bit_cast<T>(swapped(word));
}

// The files, and what all of their values add up to.
class Files {
 public:
  Files() {
    std::string name = (std::filesystem::temp_directory_path() / "kova-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    _folder = name;
    std::ofstream ints(path("ints"), std::ios::binary);
    std::ofstream doubles(path("doubles"), std::ios::binary);
    std::ofstream intTexts(path("int-texts"), std::ios::binary);
    std::ofstream doubleTexts(path("double-texts"), std::ios::binary);
    std::uint64_t state = 1;
    char text[32];
    for (int i = 0; i < kValues; ++i) {
      state = state * 6364136223846793005U + 1442695040888963407U;
      // Numbers of one to ten digits, and coordinates of a part.
      const int value =
          static_cast<int>(static_cast<std::uint32_t>(state >> 32) >> (state >> 27) % 30);
      const double real = static_cast<double>(static_cast<std::int64_t>(state) >> 11) / 1e12;
      intSum += static_cast<std::uint64_t>(value);
      doubleSum += real;
      const std::uint32_t word = swapped(static_cast<std::uint32_t>(value));
      const std::uint64_t wide = swapped(std::bit_cast<std::uint64_t>(real));
      ints.write(reinterpret_cast<const char*>(&word), sizeof word);
      doubles.write(reinterpret_cast<const char*>(&wide), sizeof wide);
      char* end = std::to_chars(text, text + sizeof text, value).ptr;
      *end++ = ' ';
      intTexts.write(text, end - text);
      end = std::to_chars(text, text + sizeof text, real).ptr;
      *end++ = ' ';
      doubleTexts.write(text, end - text);
    }
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  ~Files() { std::filesystem::remove_all(_folder); }

  std::string path(const char* name) const { return _folder + "/" + name; }

  std::uint64_t intSum = 0;
  double doubleSum = 0.0;

 private:
  std::string _folder;
};

Files& files() {
  static Files all;
  return all;
}

template <class T>
struct Work;
template <>
struct Work<int> {
  using Sum = std::uint64_t;
  static constexpr const char* kBinary = "ints";
  static constexpr const char* kText = "int-texts";
  static constexpr const char* kFormat = "%d";
  static Sum expected() { return files().intSum; }
  static Sum term(int value) { return static_cast<Sum>(value); }
};
template <>
struct Work<double> {
  using Sum = double;
  static constexpr const char* kBinary = "doubles";
  static constexpr const char* kText = "double-texts";
  static constexpr const char* kFormat = "%lf";
  static Sum expected() { return files().doubleSum; }
  static Sum term(double value) { return value; }
};

// Runs `pass`, which gives the sum of all values of its file, and checks it.
template <class T, class Pass>
void measure(benchmark::State& state, Pass pass) {
  const auto expected = Work<T>::expected();
  for (auto _ : state) {
    // Both sums are of the same terms in the same order.
    if (!std::equal_to<>()(expected, pass())) {
      state.SkipWithError("wrong sum");
      return;
    }
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}

template <class T>
typename Work<T>::Sum sumOf(const std::vector<T>& values) {
  typename Work<T>::Sum sum = 0;
  for (const T value : values) sum += Work<T>::term(value);
  return sum;
}

KOVAFileHandle fileOf(const char* name) {
  return KOVAFileHandle(new KOVAFile(KOVAFilePath(files().path(name).c_str(), false)));
}

class Mapping {
 public:
  explicit Mapping(const char* name) {
    const int descriptor = open(files().path(name).c_str(), O_RDONLY | O_CLOEXEC);
    struct stat about {};
    if (descriptor < 0 || fstat(descriptor, &about) != 0) std::abort();
    _size = static_cast<std::size_t>(about.st_size);
    _bytes = mmap(nullptr, _size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    close(descriptor);
    if (_bytes == MAP_FAILED) std::abort();
  }
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;
  ~Mapping() { munmap(_bytes, _size); }

  const unsigned char* begin() const { return static_cast<const unsigned char*>(_bytes); }
  const char* text() const { return static_cast<const char*>(_bytes); }
  const char* textEnd() const { return text() + _size; }

 private:
  void* _bytes;
  std::size_t _size;
};

KOVAResult readOne(KOVADefaultBinaryBuffer& buffer, int& value) { return buffer.ReadInt(value); }
KOVAResult readOne(KOVADefaultBinaryBuffer& buffer, double& value) {
  return buffer.ReadDouble(value);
}
KOVAResult readOne(KOVADefaultTxtBuffer& buffer, int& value) { return buffer.ReadInt(value); }
KOVAResult readOne(KOVADefaultTxtBuffer& buffer, double& value) { return buffer.ReadDouble(value); }
template <class Buffer>
KOVAResult readAll(Buffer& buffer, std::vector<int>& values) {
  return buffer.ReadInts(values.data(), kValues);
}
template <class Buffer>
KOVAResult readAll(Buffer& buffer, std::vector<double>& values) {
  return buffer.ReadDoubles(values.data(), kValues);
}

// One value after the other.

template <class T, class Buffer>
void oursSingle(benchmark::State& state, const char* name) {
  measure<T>(state, [name] {
    Buffer buffer(fileOf(name), 0);
    typename Work<T>::Sum sum = 0;
    T value;
    for (int i = 0; i < kValues && readOne(buffer, value).IsSuccess(); ++i) {
      sum += Work<T>::term(value);
    }
    return sum;
  });
}

template <class T>
void freadSingle(benchmark::State& state) {
  measure<T>(state, [] {
    std::FILE* const stream = std::fopen(files().path(Work<T>::kBinary).c_str(), "rb");
    if (stream == nullptr) std::abort();
    std::setvbuf(stream, nullptr, _IONBF, 0);
    static unsigned char bytes[64 * 1024];
    typename Work<T>::Sum sum = 0;
    std::size_t count;
    while ((count = std::fread(bytes, 1, sizeof bytes, stream)) > 0) {
      for (std::size_t at = 0; at < count; at += sizeof(T)) {
        sum += Work<T>::term(fromBigEndian<T>(bytes + at));
      }
    }
    std::fclose(stream);
    return sum;
  });
}

template <class T>
void mmapSingle(benchmark::State& state) {
  measure<T>(state, [] {
    const Mapping mapping(Work<T>::kBinary);
    typename Work<T>::Sum sum = 0;
    const unsigned char* at = mapping.begin();
    for (int i = 0; i < kValues; ++i, at += sizeof(T)) sum += Work<T>::term(fromBigEndian<T>(at));
    return sum;
  });
}

template <class T>
void ifstreamSingle(benchmark::State& state) {
  measure<T>(state, [] {
    std::ifstream stream(files().path(Work<T>::kBinary), std::ios::binary);
    typename Work<T>::Sum sum = 0;
    unsigned char bytes[sizeof(T)];
    while (stream.read(reinterpret_cast<char*>(bytes), sizeof bytes)) {
      sum += Work<T>::term(fromBigEndian<T>(bytes));
    }
    return sum;
  });
}

#ifdef KOVA_HAS_QT
template <class T>
void qtSingle(benchmark::State& state) {
  measure<T>(state, [] {
    QFile file(QString::fromStdString(files().path(Work<T>::kBinary)));
    if (!file.open(QIODevice::ReadOnly)) std::abort();
    QDataStream stream(&file);
    stream.setFloatingPointPrecision(QDataStream::DoublePrecision);
    typename Work<T>::Sum sum = 0;
    T value;
    for (int i = 0; i < kValues; ++i) {
      stream >> value;
      sum += Work<T>::term(value);
    }
    return sum;
  });
}
#endif

// All of them into an array, which is there already.

template <class T, class Buffer>
void oursArray(benchmark::State& state, const char* name) {
  std::vector<T> values(static_cast<std::size_t>(kValues));
  measure<T>(state, [&] {
    Buffer buffer(fileOf(name), 0);
    if (readAll(buffer, values).IsFailure()) std::abort();
    benchmark::ClobberMemory();
    return sumOf(values);
  });
}

template <class T>
void mmapArray(benchmark::State& state) {
  std::vector<T> values(static_cast<std::size_t>(kValues));
  measure<T>(state, [&] {
    const Mapping mapping(Work<T>::kBinary);
    const unsigned char* at = mapping.begin();
    for (T& value : values) {
      value = fromBigEndian<T>(at);
      at += sizeof(T);
    }
    benchmark::ClobberMemory();
    return sumOf(values);
  });
}

template <class T>
void freadArray(benchmark::State& state) {
  std::vector<T> values(static_cast<std::size_t>(kValues));
  measure<T>(state, [&] {
    std::FILE* const stream = std::fopen(files().path(Work<T>::kBinary).c_str(), "rb");
    if (stream == nullptr) std::abort();
    std::setvbuf(stream, nullptr, _IONBF, 0);
    static unsigned char bytes[64 * 1024];
    std::size_t count;
    T* value = values.data();
    while ((count = std::fread(bytes, 1, sizeof bytes, stream)) > 0) {
      for (std::size_t at = 0; at < count; at += sizeof(T)) *value++ = fromBigEndian<T>(bytes + at);
    }
    std::fclose(stream);
    benchmark::ClobberMemory();
    return sumOf(values);
  });
}

// Text. The values are gathered for the bulk reads and added up at once for the single ones.

struct FromChars {
  template <class T>
  static const char* convert(const char* at, const char* end, T& value) {
    return std::from_chars(at, end, value).ptr;
  }
};

#ifdef KOVA_HAS_FAST_FLOAT
struct FastFloat {
  template <class T>
  static const char* convert(const char* at, const char* end, T& value) {
    return fast_float::from_chars(at, end, value).ptr;
  }
};
#endif

template <class T, class Parser>
void parsedText(benchmark::State& state, bool isArray) {
  std::vector<T> values(isArray ? static_cast<std::size_t>(kValues) : 0);
  measure<T>(state, [&] {
    const Mapping mapping(Work<T>::kText);
    const char* at = mapping.text();
    const char* const end = mapping.textEnd();
    typename Work<T>::Sum sum = 0;
    T value = 0;
    for (int i = 0; i < kValues; ++i) {
      at = Parser::convert(at, end, value) + 1;
      if (isArray) {
        values[static_cast<std::size_t>(i)] = value;
      } else {
        sum += Work<T>::term(value);
      }
    }
    return isArray ? sumOf(values) : sum;
  });
}

template <class T>
void ifstreamText(benchmark::State& state) {
  measure<T>(state, [] {
    std::ifstream stream(files().path(Work<T>::kText));
    typename Work<T>::Sum sum = 0;
    T value;
    while (stream >> value) sum += Work<T>::term(value);
    return sum;
  });
}

template <class T>
void fscanfText(benchmark::State& state) {
  measure<T>(state, [] {
    std::FILE* const stream = std::fopen(files().path(Work<T>::kText).c_str(), "r");
    if (stream == nullptr) std::abort();
    typename Work<T>::Sum sum = 0;
    T value;
    // The format is one of two constants.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    while (std::fscanf(stream, Work<T>::kFormat, &value) == 1) sum += Work<T>::term(value);
#pragma GCC diagnostic pop
    std::fclose(stream);
    return sum;
  });
}

template <class Function, class... Arguments>
void add(const std::string& name, Function function, Arguments... arguments) {
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    function(state, arguments...);
  })->Unit(benchmark::kMillisecond);
}

template <class T>
void addAll(const std::string& plural) {
  const std::string single = "single big-endian " + plural + "/";
  add(single + "KOVADefaultBinaryBuffer", oursSingle<T, KOVADefaultBinaryBuffer>, Work<T>::kBinary);
  add(single + "fread 64 KiB", freadSingle<T>);
  add(single + "mmap", mmapSingle<T>);
  add(single + "std::ifstream", ifstreamSingle<T>);
#ifdef KOVA_HAS_QT
  add(single + "QDataStream", qtSingle<T>);
#endif

  const std::string array = "array of big-endian " + plural + "/";
  add(array + "KOVADefaultBinaryBuffer", oursArray<T, KOVADefaultBinaryBuffer>, Work<T>::kBinary);
  add(array + "mmap", mmapArray<T>);
  add(array + "fread 64 KiB", freadArray<T>);

  const std::string text = "text " + plural + "/";
  add(text + "KOVADefaultTxtBuffer", oursSingle<T, KOVADefaultTxtBuffer>, Work<T>::kText);
  add(text + "std::from_chars over mmap", parsedText<T, FromChars>, false);
  add(text + "std::ifstream", ifstreamText<T>);
  add(text + "fscanf", fscanfText<T>);

  const std::string bulk = "array of text " + plural + "/";
  add(bulk + "KOVADefaultTxtBuffer", oursArray<T, KOVADefaultTxtBuffer>, Work<T>::kText);
  add(bulk + "std::from_chars over mmap", parsedText<T, FromChars>, true);
#ifdef KOVA_HAS_FAST_FLOAT
  if constexpr (std::is_floating_point_v<T>) {
    add(bulk + "fast_float over mmap", parsedText<T, FastFloat>, true);
  }
#endif
}

}  // namespace

int main(int argc, char** argv) {
  addAll<int>("ints");
  addAll<double>("doubles");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
