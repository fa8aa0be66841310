#include "kovabase/events/KOVCEvent.h"

#include "kovabase/events/internal/ChunkMemory.h"

#include <charconv>
#include <cstring>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

struct NamedLevel {
  std::string_view name;
  KOVAEventLevel level;
};

constexpr NamedLevel kNamedLevels[] = {
    {"debug", KOVAEventLevels::kDebug},     {"test", KOVAEventLevels::kTest},
    {"verbose", KOVAEventLevels::kVerbose}, {"message", KOVAEventLevels::kMessage},
    {"info", KOVAEventLevels::kMessage},    {"warning", KOVAEventLevels::kWarning},
    {"error", KOVAEventLevels::kError},     {"assert", KOVAEventLevels::kAssert},
};

char toLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase) {
  if (text.size() != lowerCase.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (toLower(text[i]) != lowerCase[i]) return false;
  }
  return true;
}

}  // namespace

KOVCEvent::KOVCEvent(const char* name, KOVAEventLevel level)
    : _name(name != nullptr ? name : ""), _level(level) {}

void KOVCEvent::GetFormattedDescription(KOVAOutputStream* /*stream*/) {}

bool KOVCEvent::IsTimed() { return false; }

KOVCEvent* KOVCEvent::Clone() const { return new KOVCEvent(*this); }

void KOVCEvent::SetEventName(const char* name) {
  _name = KOVAEventText(name != nullptr ? name : "");
}

void KOVCEvent::SetEventName(KOVAEventText name) noexcept { _name = std::move(name); }

KOVAEventLevel KOVCEvent::GetLevel(const char* text, KOVAEventLevel defaultLevel) {
  if (text == nullptr) return defaultLevel;
  const std::string_view view(text);
  for (const NamedLevel& named : kNamedLevels) {
    if (equalsIgnoringCase(view, named.name)) return named.level;
  }
  KOVAEventLevel level = 0;
  const char* const end = view.data() + view.size();
  const auto [stop, error] = std::from_chars(view.data(), end, level);
  return error == std::errc() && stop == end ? level : defaultLevel;
}

void* KOVCEvent::operator new(std::size_t bytes) { return kova::internal::allocateBlock(bytes); }

void* KOVCEvent::operator new(std::size_t bytes, std::align_val_t alignment) {
  return ::operator new(bytes, alignment);
}

void KOVCEvent::operator delete(void* event, std::size_t bytes) noexcept {
  if (event != nullptr) kova::internal::freeBlock(event, bytes);
}

void KOVCEvent::operator delete(void* event, std::size_t bytes,
                                std::align_val_t alignment) noexcept {
  static_cast<void>(bytes);
  ::operator delete(event, alignment);
}
