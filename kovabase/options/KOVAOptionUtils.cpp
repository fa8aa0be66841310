#include "kovabase/options/KOVAOptionUtils.h"

#include "kovabase/foundation/Gk_Exception.h"
#include "kovabase/options/KOVAOption.h"

namespace {

template <class T>
T readOrThrow(const KOVAOption* option, const char* message) {
  T value{};
  if (option == nullptr) return value;
  const KOVAResult result = option->GetValue(value);
  if (result.IsFailure()) throw Gk_Exception(message, result, nullptr);
  return value;
}

}  // namespace

bool KOVAOptionUtils::GetBoolValue(const KOVAOption* option) {
  return readOrThrow<bool>(option, "KOVAOption value type can not be converted to bool");
}

double KOVAOptionUtils::GetDoubleValue(const KOVAOption* option) {
  return readOrThrow<double>(option, "KOVAOption value type can not be converted to double");
}

int KOVAOptionUtils::GetIntValue(const KOVAOption* option) {
  return readOrThrow<int>(option, "KOVAOption value type can not be converted to int");
}

KOVAString KOVAOptionUtils::GetStringValue(const KOVAOption* option) {
  return readOrThrow<KOVAString>(option, "KOVAOption value type can not be converted to string");
}
