#include "ledger.h"

NotStocked::NotStocked(Quark paint) : OrnError{std::wstring{L"not stocked: "} + paint.value()}, paint_{paint} {}

Ledger::Ledger(EVSubscriptionList<Quark> &mixed) : EVSubscription<Quark>{mixed, EVSubscriptionDetached{}} {
  attach();
}

Ledger::~Ledger() {
  destroy();
}

void Ledger::notify(Quark paint) {
  if (paint == Quark::create(L"vermilion")) throw NotStocked{paint};
  OrnSimpleLock lock{section_, L"notify"};
  paints_.insert(paint);
}

std::wstring Ledger::list() const {
  OrnSimpleLock lock{section_, L"list"};
  std::wstring names;
  for (Quark paint : paints_) names += (names.empty() ? L"" : L", ") + std::wstring{paint.value()};
  return names;
}
