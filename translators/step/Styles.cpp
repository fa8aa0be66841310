#include "translators/step/Styles.h"

#include "translators/step/Fields.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <set>
#include <string_view>
#include <system_error>
#include <tuple>

namespace kova::translators::step {

namespace {

// Of what a style may be made, more than any system writes.
constexpr int kMostStyleRecords = 64;

struct NamedColour {
  const char* name;
  Colour colour;
};

constexpr NamedColour kNamedColours[] = {
    {"red", {1, 0, 0}},     {"green", {0, 1, 0}}, {"blue", {0, 0, 1}},  {"yellow", {1, 1, 0}},
    {"magenta", {1, 0, 1}}, {"cyan", {0, 1, 1}},  {"black", {0, 0, 0}}, {"white", {1, 1, 1}},
};

template <class Value>
void sortByRecord(std::vector<std::pair<RecordNumber, Value>>& list) {
  std::stable_sort(list.begin(), list.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
}

// The first of the record.
template <class Value>
const Value* find(const std::vector<std::pair<RecordNumber, Value>>& list, RecordNumber record) {
  const auto found =
      std::lower_bound(list.begin(), list.end(), record,
                       [](const auto& entry, RecordNumber number) { return entry.first < number; });
  return found != list.end() && found->first == record ? &found->second : nullptr;
}

// The number that a name is, from 1 on; 0 when it is none.
int parseLayer(std::string_view name) {
  while (!name.empty() && name.front() == ' ') name.remove_prefix(1);
  while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
  int number = 0;
  const char* const end = name.data() + name.size();
  const auto [behind, error] = std::from_chars(name.data(), end, number);
  return error == std::errc() && behind == end && number > 0 ? number : 0;
}

}  // namespace

Styles::Styles(Document& document, Model& model) : _document(document), _model(model) {
  ReadStyles();
  ReadLayers();
}

Looks Styles::Get(RecordNumber record, const Looks& around, bool isCurve) const {
  Looks looks = around;
  if (const int* const layer = find(_layers, record)) looks.layer = *layer;
  if (const StyleColours* const colours = find(_colours, record)) {
    const int first = isCurve ? colours->curve : colours->surface;
    const int second = isCurve ? colours->surface : colours->curve;
    if (first >= 0 || second >= 0) looks.colour = first >= 0 ? first : second;
  }
  return looks;
}

void Styles::ReadStyles() {
  for (const bool isOverriding : {true, false}) {
    for (const RecordNumber record : _document.styledItems) {
      const bool overrides = _document.GetKeyword(record) == Keyword::kOverridingStyledItem;
      if (overrides != isOverriding) continue;
      const char* const list = _document.GetRecords()[record].IsComplex()
                                   ? _document.FindPart(record, Keyword::kStyledItem)
                                   : _document.GetList(record);
      Fields fields(_document, record, list);
      if (!_document.GetRecords()[record].IsComplex()) fields.Skip();
      std::vector<RecordNumber> styles;
      fields.References(styles);
      const RecordNumber item = fields.Reference();
      if (!fields) continue;
      StyleColours colours;
      if (styles.size() > kMostStyleRecords) styles.resize(kMostStyleRecords);
      for (const RecordNumber style : styles) {
        const StyleColours found = FindColours(style);
        if (colours.surface < 0) colours.surface = found.surface;
        if (colours.curve < 0) colours.curve = found.curve;
      }
      if (colours.surface >= 0 || colours.curve >= 0) _colours.emplace_back(item, colours);
    }
  }
  sortByRecord(_colours);
}

Styles::StyleColours Styles::FindColours(RecordNumber style) {
  const auto known = _knownStyles.find(style);
  if (known != _knownStyles.end()) return known->second;
  struct Visit {
    RecordNumber record;
    bool isCurve;
  };
  StyleColours colours;
  std::vector<Visit> stack{{style, false}};
  for (int left = kMostStyleRecords; left > 0 && !stack.empty(); --left) {
    const Visit visit = stack.back();
    stack.pop_back();
    bool isCurve = visit.isCurve;
    switch (_document.GetKeyword(visit.record)) {
      case Keyword::kColourRgb:
      case Keyword::kPredefinedColour: {
        int& colour = isCurve ? colours.curve : colours.surface;
        if (colour < 0) colour = ReadColour(visit.record);
        continue;
      }
      case Keyword::kCurveStyle: isCurve = true; break;
      case Keyword::kStyleHolder:
      case Keyword::kSurfaceStyle: break;
      default: continue;
    }
    // All references, whatever the type calls them: those that lead to no colour lead nowhere.
    const std::size_t first = stack.size();
    int lists = 0;
    const char* const list = _document.GetRecords()[visit.record].IsComplex()
                                 ? nullptr
                                 : _document.GetList(visit.record);
    if (list == nullptr) continue;
    Parameters parameters(list);
    for (int members = 4 * kMostStyleRecords; members > 0; --members) {
      std::uint64_t id = 0;
      if (parameters.TakeReference(id)) {
        const RecordNumber record = _document.Find(id);
        if (record != kNoRecord) stack.push_back({record, isCurve});
      } else if (parameters.IsAtEnd()) {
        if (lists == 0) break;
        parameters.CloseList();
        --lists;
      } else if (parameters.GetKind() == Parameters::Kind::kList) {
        parameters.OpenList();
        ++lists;
      } else {
        parameters.Skip();
      }
    }
    if (!_document.Charge(static_cast<std::size_t>(parameters.GetPosition() - list))) break;
    std::reverse(stack.begin() + static_cast<std::ptrdiff_t>(first), stack.end());
  }
  _knownStyles.emplace(style, colours);
  return colours;
}

int Styles::ReadColour(RecordNumber record) {
  Fields fields(_document, record);
  if (_document.GetKeyword(record) == Keyword::kPredefinedColour) {
    const KOVAString name = fields.Text();
    for (const NamedColour& known : kNamedColours) {
      if (name.equalsIgnoreCase(KOVAString(known.name))) return AddColour(known.colour);
    }
    return -1;
  }
  fields.Skip();
  double amounts[3];
  for (double& amount : amounts) {
    amount = fields.Number();
    // Not a number fails this too.
    if (!(amount >= 0.0)) amount = 0.0;
    amount = std::min(amount, 1.0);
  }
  if (!fields) return -1;
  return AddColour({static_cast<float>(amounts[0]), static_cast<float>(amounts[1]),
                    static_cast<float>(amounts[2])});
}

int Styles::AddColour(const Colour& colour) {
  const auto [entry, isNew] = _knownColours.emplace(
      std::tuple(colour.red, colour.green, colour.blue), _model.colours.size());
  if (isNew) _model.colours.add(colour);
  return entry->second;
}

void Styles::ReadLayers() {
  struct Assignment {
    KOVAString name;
    int number;
    std::vector<RecordNumber> items;
  };
  std::vector<Assignment> assignments;
  std::set<int> used;
  for (const RecordNumber record : _document.layerAssignments) {
    Fields fields(_document, record);
    std::string_view raw;
    Parameters(_document.GetList(record)).TakeString(raw);
    Assignment assignment;
    assignment.name = fields.Text();
    assignment.number = parseLayer(raw);
    fields.Skip().References(assignment.items);
    if (!fields) continue;
    if (assignment.number != 0) used.insert(assignment.number);
    assignments.push_back(std::move(assignment));
  }
  std::map<KOVAString, int> numbers;
  std::set<int> added;
  int next = 1;
  for (Assignment& assignment : assignments) {
    int& number = assignment.number;
    if (number == 0) {
      const auto [entry, isNew] = numbers.emplace(assignment.name, 0);
      if (isNew) {
        while (used.count(next) != 0) ++next;
        entry->second = next++;
      }
      number = entry->second;
    }
    if (added.insert(number).second) _model.layers.add({number, assignment.name});
    for (const RecordNumber item : assignment.items) _layers.emplace_back(item, number);
  }
  sortByRecord(_layers);
}

}  // namespace kova::translators::step
