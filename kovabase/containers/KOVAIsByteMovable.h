#pragma once

#include <array>
#include <cstddef>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <variant>

/// False for the types that are known not to survive a move of their bytes to another address,
/// because they point into themselves: the texts and node containers of the standard library, and
/// what is directly made of them. A class that has such a member, or points into itself in another
/// way, is not recognised; its author can say so:
///
///     template <>
///     inline constexpr bool KOVAIsByteMovable<Node> = false;
template <class T>
inline constexpr bool KOVAIsByteMovable = true;

// A path can be recognised without the weight of <filesystem>.
template <class T>
requires requires {
  typename T::string_type;
  T::preferred_separator;
}
inline constexpr bool KOVAIsByteMovable<T> = false;

template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::basic_string<Ts...>> = false;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::list<Ts...>> = false;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::map<Ts...>> = false;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::multimap<Ts...>> = false;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::set<Ts...>> = false;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::multiset<Ts...>> = false;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::unordered_map<Ts...>> = false;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::unordered_multimap<Ts...>> = false;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::unordered_set<Ts...>> = false;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::unordered_multiset<Ts...>> = false;

template <class First, class Second>
inline constexpr bool KOVAIsByteMovable<std::pair<First, Second>> =
    KOVAIsByteMovable<First>&& KOVAIsByteMovable<Second>;
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::tuple<Ts...>> = (KOVAIsByteMovable<Ts> && ...);
template <class... Ts>
inline constexpr bool KOVAIsByteMovable<std::variant<Ts...>> = (KOVAIsByteMovable<Ts> && ...);
template <class T>
inline constexpr bool KOVAIsByteMovable<std::optional<T>> = KOVAIsByteMovable<T>;
template <class T, std::size_t count>
inline constexpr bool KOVAIsByteMovable<std::array<T, count>> = KOVAIsByteMovable<T>;
