#include "kovabase/options/KOVAOptions.h"

#include "kovabase/events/KOVAMessageChannels.h"
#include "kovabase/files/KOVAFilePath.h"
#include "kovabase/io/KOVAStreamFormatter.h"
#include "kovabase/options/KOVACfgFile.h"
#include "kovabase/options/internal/KOVAOptionToken.h"
#include "kovabase/strings/Gk_String.h"
#include "kovabase/strings/KOVAStringConversions.h"

using namespace KOVAResultCode;
using kova::internal::NamePart;
using kova::internal::NameParts;

namespace {

// The exact part comes before the wildcard at every level; below the last level there is nothing.
KOVAOption* findBelow(const KOVAOptionToken* node, const NameParts& name, int level) {
  if (node == nullptr) return nullptr;
  if (level >= name.contexts()) return node->optionOfWildcards();
  if (!name.context(level).isWildcard()) {
    KOVAOption* found = findBelow(node->findChild(name.context(level)), name, level + 1);
    if (found != nullptr) return found;
  }
  return findBelow(node->wildcardChild(), name, level + 1);
}

// Whether a format takes nothing but two texts, so that it is safe with two texts.
bool takesTwoTexts(const char* format) {
  int texts = 0;
  for (; *format != '\0'; ++format) {
    if (*format != '%') continue;
    ++format;
    if (*format == '%') continue;
    while (*format == '-' || (*format >= '0' && *format <= '9') || *format == '.') ++format;
    if (*format != 's') return false;
    ++texts;
  }
  return texts == 2;
}

// The messages of the info channel are formatted a second time, so that data doubles its percents.
Gk_String withDoubledPercents(const KOVAString& text) {
  Gk_String doubled(text);
  doubled.replace("%", "%%");
  return doubled;
}

// The format has been looked at: it takes the two texts.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void report(const char* format, const char* name, const char* value) {
  KOVAInfo::Printf(format, name, value);
}
#pragma GCC diagnostic pop

template <class V>
KOVAResult fileNew(KOVAOptions& options, KOVAOption& option, const V& value) {
  KOVAResult result = kFailure;
  option.SetValue(value);
  result = options.AddOption(option);
  return result;
}

}  // namespace

KOVAOptions::KOVAOptions() : _root(new KOVAOptionToken) {}

KOVAOptions::KOVAOptions(const KOVAOptions& other) : KOVAOptions() {
  AddOptions(other, true);
  _count = other._count;
}

KOVAOptions& KOVAOptions::operator=(const KOVAOptions& other) {
  if (this == &other) return *this;
  KOVAOptions copied(other);
  std::swap(_root, copied._root);
  _count = copied._count;
  _cursor = nullptr;
  return *this;
}

KOVAOptions::~KOVAOptions() { delete _root; }

KOVAResult KOVAOptions::AddOption(const KOVAOption* option) {
  if (option == nullptr) return kInvalidArgument;
  KOVAString text;
  const KOVAResult named = option->GetName(text);
  if (named.IsFailure()) return named;
  const NameParts name(text);
  if (!name.isValid()) return kInvalidArgument;
  // Looked at before anything is made, so that a name that cannot be filed leaves no nodes.
  if (name.leaf().count == 0) return kFailure;
  for (int level = 0; level < name.contexts(); ++level) {
    if (name.context(level).count == 0) return kFailure;
  }

  KOVAOptionToken* node = _root->findOrAddChild(name.leaf());
  for (int level = 0; level + 1 < KOVAOptionToken::kLevels; ++level) {
    node = level < name.contexts() ? node->findOrAddChild(name.context(level))
                                   : node->findOrAddWildcard();
  }
  node->setOption(*option);
  ++_count;
  return kSuccess;
}

KOVAResult KOVAOptions::AddOption(const KOVAOption& option) { return AddOption(&option); }

KOVAResult KOVAOptions::AddOption(const KOVAString& name, const KOVAString& value) {
  KOVAOption option(name);
  return fileNew(*this, option, value);
}

KOVAResult KOVAOptions::AddOption(const KOVAString& name, const char* value) {
  return AddOption(name, KOVAString(value));
}

KOVAResult KOVAOptions::AddOption(const KOVAString& name, int value) {
  KOVAOption option(name);
  return fileNew(*this, option, value);
}

KOVAResult KOVAOptions::AddOption(const KOVAString& name, double value) {
  KOVAOption option(name);
  return fileNew(*this, option, value);
}

KOVAResult KOVAOptions::AddOption(const KOVAString& name, bool value) {
  KOVAOption option(name);
  return fileNew(*this, option, value);
}

KOVAResult KOVAOptions::AddOptionParseValue(const KOVAString& name, const KOVAString& text) {
  KOVAString value;
  RemoveDoubleQuotesAtStartAndEndOf(text, value);
  return AddOption(name, value);
}

KOVAResult KOVAOptions::AddOptions(KOVAOptions& other, bool overwrite) {
  other.ResetIteration();
  return AddOptions(static_cast<const KOVAOptions&>(other), overwrite);
}

KOVAResult KOVAOptions::AddOptions(const KOVAOptions& other, bool overwrite) {
  const KOVAOptionToken* node = other._root;
  while ((node = node->next()) != nullptr) {
    if (overwrite || !HasOption(*node->option())) AddOption(node->option());
  }
  return kSuccess;
}

KOVAResult KOVAOptions::GetOption(const KOVAString& name, KOVAOption*& option) const {
  option = nullptr;
  const NameParts parts(name);
  if (!parts.isValid()) return kInvalidArgument;
  option = findBelow(_root->findChild(parts.leaf()), parts, 0);
  return option != nullptr ? kSuccess : kFailure;
}

bool KOVAOptions::HasOption(const KOVAOption& option) const {
  KOVAString text;
  if (option.GetName(text).IsFailure()) return false;
  const NameParts name(text);
  if (!name.isValid()) return false;
  const KOVAOptionToken* node = _root->findChild(name.leaf());
  for (int level = 0; level + 1 < KOVAOptionToken::kLevels && node != nullptr; ++level) {
    node = level < name.contexts() ? node->findChild(name.context(level)) : node->wildcardChild();
  }
  return node != nullptr && node->option() != nullptr;
}

KOVAResult KOVAOptions::GetNext(KOVAOption*& option) {
  const KOVAOptionToken* const from = _cursor != nullptr ? _cursor : _root;
  _cursor = from->next();
  option = _cursor != nullptr ? _cursor->option() : nullptr;
  return _cursor != nullptr ? kSuccess : kFailure;
}

void KOVAOptions::ResetIteration() noexcept { _cursor = nullptr; }

KOVAResult KOVAOptions::RemoveAll() {
  _root->removeChildren();
  _cursor = nullptr;
  _count = 0;
  return kSuccess;
}

KOVAResult KOVAOptions::ReadFromFile(const KOVAString& path) {
  if (path.isEmpty()) return kInvalidArgument;
  KOVACfgFile file;
  return takeKeys(file, file.Load(KOVAFilePath(path, false)));
}

KOVAResult KOVAOptions::ReadFromFile(FILE* stream) {
  if (stream == nullptr) return kInvalidArgument;
  KOVACfgFile file;
  return takeKeys(file, file.Load(stream));
}

KOVAResult KOVAOptions::takeKeys(const KOVACfgFile& file, KOVAResult loaded) {
  if (loaded.IsFailure()) return loaded;
  const KOVACfgFileSection* const section = file.findSection("");
  for (int i = 0; section != nullptr && i < section->GetNumKeys(); ++i) {
    const KOVACfgFileKey* const key = section->GetKey(i);
    AddOptionParseValue(key->GetName(), key->GetAllValues());
  }
  return kSuccess;
}

void KOVAOptions::Dump(const char* header, const char* format, const char* footer) {
  ResetIteration();
  static_cast<const KOVAOptions*>(this)->Dump(header, format, footer);
}

void KOVAOptions::Dump(const char* header, const char* format, const char* footer) const {
  if (format == nullptr || !takesTwoTexts(format)) format = "%s = %s";
  if (header != nullptr) KOVAInfo::Printf("%s", header);
  const KOVAOptionToken* node = _root;
  while ((node = node->next()) != nullptr) {
    KOVAString name;
    KOVAString value;
    if (node->option()->GetNameAndValueAsString(name, value).IsFailure()) continue;
    report(format, withDoubledPercents(name).getText(), withDoubledPercents(value).getText());
  }
  if (footer != nullptr) KOVAInfo::Printf("%s", footer);
}

void KOVAOptions::DumpOptions(KOVAStreamFormatter& formatter) {
  ResetIteration();
  static_cast<const KOVAOptions*>(this)->DumpOptions(formatter);
}

void KOVAOptions::DumpOptions(KOVAStreamFormatter& formatter) const {
  const KOVAOptionToken* node = _root;
  while ((node = node->next()) != nullptr) {
    KOVAString name;
    KOVAString value;
    if (node->option()->GetNameAndValueAsString(name, value).IsFailure()) continue;
    formatter << name << " = " << value << KOVAEndLine;
  }
}
