// Option sets against a plain model: a list of names that is searched by the rules. Each line of
// the input is an operation, a letter, and a name.

#include "kovabase/options/KOVAOptions.h"
#include "kovabase/strings/KOVAStringTokenizer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace KOVAResultCode;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

constexpr std::size_t kLevels = 7;

bool isWildcard(const KOVAString& part) { return part == KOVAString("*"); }

struct Filed {
  KOVAString name;
  int value;
  std::array<KOVAString, kLevels> path;  // the own name, the contexts, wildcards
};

using Candidates = std::vector<const Filed*>;

class Model {
 public:
  KOVAResult add(const KOVAString& name, int value) {
    Filed filed{name, value, {}};
    std::vector<KOVAString> parts = partsOf(name);
    if (parts.empty() || parts.size() > kLevels) return kInvalidArgument;
    for (const KOVAString& part : parts) {
      if (part.isEmpty()) return kFailure;
    }
    filed.path = pathOf(parts);
    ++count;
    for (Filed& known : _filed) {
      if (!isSamePath(known.path, filed.path)) continue;
      known.name = name;
      known.value = value;
      return kSuccess;
    }
    _filed.push_back(filed);
    return kSuccess;
  }

  // The option that a look-up gives, or null.
  const Filed* find(const KOVAString& name) const {
    const std::vector<KOVAString> parts = partsOf(name);
    if (parts.empty() || parts.size() > kLevels) return nullptr;
    const std::array<KOVAString, kLevels> path = pathOf(parts);
    return findBelow(having(all(), 0, path[0]), path, 1);
  }

  bool has(const KOVAString& name) const {
    const std::vector<KOVAString> parts = partsOf(name);
    if (parts.empty() || parts.size() > kLevels) return false;
    const std::array<KOVAString, kLevels> path = pathOf(parts);
    for (const Filed& known : _filed) {
      if (isSamePath(known.path, path)) return true;
    }
    return false;
  }

  Candidates inOrder() const {
    Candidates order;
    walk(all(), 0, order);
    return order;
  }

  void clear() {
    _filed.clear();
    count = 0;
  }

  int count = 0;

 private:
  static std::vector<KOVAString> partsOf(const KOVAString& name) {
    KOVAStringTokenizer tokenizer(name, '.');
    std::vector<KOVAString> parts;
    KOVAString part;
    for (int i = 0; tokenizer.GetToken(i, part).IsSuccess(); ++i) parts.push_back(part);
    return parts;
  }

  static std::array<KOVAString, kLevels> pathOf(const std::vector<KOVAString>& parts) {
    std::array<KOVAString, kLevels> path;
    path.fill(KOVAString("*"));
    path[0] = parts.back();
    for (std::size_t i = 0; i + 1 < parts.size(); ++i) path[i + 1] = parts[i];
    return path;
  }

  static bool isSamePath(const std::array<KOVAString, kLevels>& a,
                         const std::array<KOVAString, kLevels>& b) {
    for (std::size_t i = 0; i < kLevels; ++i) {
      if (!a[i].equalsIgnoreCase(b[i])) return false;
    }
    return true;
  }

  Candidates all() const {
    Candidates candidates;
    for (const Filed& known : _filed) candidates.push_back(&known);
    return candidates;
  }

  static Candidates having(const Candidates& from, std::size_t level, const KOVAString& part) {
    Candidates candidates;
    for (const Filed* known : from) {
      if (known->path[level].equalsIgnoreCase(part)) candidates.push_back(known);
    }
    return candidates;
  }

  static const Filed* findBelow(const Candidates& from, const std::array<KOVAString, kLevels>& path,
                                std::size_t level) {
    if (from.empty()) return nullptr;
    if (level == kLevels) return from[0];
    const Filed* const exact = findBelow(having(from, level, path[level]), path, level + 1);
    if (exact != nullptr || isWildcard(path[level])) return exact;
    return findBelow(having(from, level, KOVAString("*")), path, level + 1);
  }

  // Named parts in the order of their filing, the wildcard last.
  static void walk(Candidates from, std::size_t level, Candidates& order) {
    if (level == kLevels) {
      order.insert(order.end(), from.begin(), from.end());
      return;
    }
    const KOVAString wildcard("*");
    while (!from.empty()) {
      const Filed* first = nullptr;
      for (const Filed* known : from) {
        if (first == nullptr && !isWildcard(known->path[level])) first = known;
      }
      const KOVAString part = first != nullptr ? first->path[level] : wildcard;
      walk(having(from, level, part), level + 1, order);
      Candidates rest;
      for (const Filed* known : from) {
        if (!known->path[level].equalsIgnoreCase(part)) rest.push_back(known);
      }
      from = rest;
    }
  }

  std::vector<Filed> _filed;
};

void requireSame(const KOVAOption& option, const Filed& wanted) {
  KOVAString name;
  int value = 0;
  require(option.GetName(name).IsSuccess() && name == wanted.name);
  require(option.GetValue(value).IsSuccess() && value == wanted.value);
}

void requireSame(KOVAOptions& options, const Model& model) {
  options.ResetIteration();
  KOVAOption* option = nullptr;
  for (const Filed* wanted : model.inOrder()) {
    require(options.GetNext(option).IsSuccess());
    requireSame(*option, *wanted);
  }
  require(options.GetNext(option).IsFailure() && option == nullptr);
  require(options.GetCount() == model.count);
}

void run(KOVAOptions& options, Model& model, char operation, const KOVAString& name, int value) {
  switch (operation) {
    case 'l': {
      KOVAOption* option = nullptr;
      const Filed* const wanted = model.find(name);
      require(options.GetOption(name, option).IsSuccess() == (wanted != nullptr));
      require((option != nullptr) == (wanted != nullptr));
      if (wanted != nullptr) requireSame(*option, *wanted);
      break;
    }
    case 'h': {
      KOVAOption option;
      option.SetValue(1);
      option.ChangeName(name);
      require(options.HasOption(option) == model.has(name));
      break;
    }
    case 'w': requireSame(options, model); break;
    case 'c': {
      KOVAOptions copied(options);
      requireSame(copied, model);
      copied.AddOption(name, value);
      options.AddOptions(copied, false);
      if (!model.has(name)) model.add(name, value);
      break;
    }
    case 'o': {
      KOVAOptions other;
      other.AddOption(name, value);
      options.AddOptions(other, true);
      model.add(name, value);
      break;
    }
    case 'r':
      options.RemoveAll();
      model.clear();
      break;
    default: require(options.AddOption(name, value) == model.add(name, value)); break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 4096) return 0;
  KOVAOptions options;
  Model model;
  std::string line;
  int value = 0;
  for (std::size_t i = 0; i <= size; ++i) {
    if (i < size && data[i] != '\n') {
      line += static_cast<char>(data[i]);
      continue;
    }
    if (!line.empty()) {
      const KOVAString name =
          KOVAString::fromBytes(line.data() + 1, static_cast<int>(line.size()) - 1, "UTF-8");
      run(options, model, line[0], name, ++value);
    }
    line.clear();
  }
  requireSame(options, model);
  return 0;
}
