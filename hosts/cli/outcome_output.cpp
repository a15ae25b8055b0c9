#include "hosts/cli/outcome_output.h"

#include "hosts/common/json_output.h"
#include "hosts/common/location_names.h"
#include "hosts/common/operation_steps.h"
#include "hosts/common/text_encoding.h"
#include "hosts/common/texts/operation_texts.h"

namespace smh {

namespace {

// By OutcomeKind.
constexpr std::wstring_view kOutcomeNames[] = {L"done", L"nothing to do", L"refused", L"failed"};

std::wstring JsonTexts(std::span<const Phrase> texts) {
  std::wstring list;
  for (const Phrase& text : texts) {
    if (!list.empty()) list += L',';
    list += JsonText(text.English());
  }
  return L'[' + list + L']';
}

std::wstring OutcomeJson(const EntryChange& change) {
  const ItemRecord& item = change.before;
  const auto text = [](std::wstring_view known) { return known.empty() ? L"null" : JsonText(known); };
  const auto* const outcome = change.outcome ? &*change.outcome : nullptr;
  const ItemRecord* const now = outcome != nullptr && outcome->now ? &*outcome->now : nullptr;
  std::wstring json = L"{" + JsonMember(L"id", text(item.id)) + L',';
  json += JsonMember(L"location", JsonText(LocationName(item.location))) + L',';
  json += JsonMember(L"name", text(item.name)) + L',' + JsonMember(L"caption", JsonText(item.caption)) + L',';
  json += JsonMember(L"action", JsonText(OperationOf(change.verb).name)) + L',';
  json += JsonMember(L"outcome",
                     JsonText(outcome == nullptr ? std::wstring_view(L"planned")
                                                 : kOutcomeNames[static_cast<std::size_t>(outcome->kind)]));
  json +=
      L',' + JsonMember(L"text", text(outcome == nullptr ? std::wstring_view() : outcome->text.English()));
  if (outcome == nullptr) json += L',' + JsonMember(L"steps", JsonTexts(StepsOf(change)));
  json += L',' + JsonMember(L"newId", text(now == nullptr ? std::wstring_view() : now->id));
  json += L',' + JsonMember(L"newLocation", now == nullptr ? L"null" : JsonText(LocationName(now->location)));
  json += L',' + JsonMember(L"newName", text(now == nullptr ? std::wstring_view() : now->name));
  return json += L'}';
}

}  // namespace

std::wstring OutcomeText(const EntryChange& change, const Outcome& outcome) {
  const Operation& operation = OperationOf(change.verb);
  const std::wstring entry = Describe(change.before);
  if (outcome.kind == OutcomeKind::kNothingToDo) return Format(texts::kOfEntry, entry, outcome.text);
  if (!outcome.IsGood()) return Format(operation.texts.cannot, entry, outcome.text);
  std::wstring text = Format(operation.texts.done, entry);
  if (outcome.now && change.verb == Verb::kMove) {
    text = Format(texts::kMovedTo, text, LocationName(outcome.now->location), outcome.now->caption);
  }
  const bool isOther = outcome.now && outcome.now->id != change.before.id;
  return isOther ? Format(texts::kNowId, text, outcome.now->id) : Format(texts::kSentence, text);
}

std::wstring PreviewText(const EntryChange& change) {
  if (change.outcome) return Printable(OutcomeText(change, *change.outcome)) + L"\n";
  std::wstring text =
      Format(OperationOf(change.verb).texts.preview, Printable(Describe(change.before))) + L"\n";
  for (const Phrase& step : StepsOf(change)) text += L"  " + Printable(step.Shown()) + L"\n";
  return text;
}

std::wstring OutcomesJson(std::span<const EntryChange> changes) {
  std::vector<std::wstring> elements;
  for (const EntryChange& change : changes) elements.push_back(OutcomeJson(change));
  return JsonArray(elements);
}

}  // namespace smh
