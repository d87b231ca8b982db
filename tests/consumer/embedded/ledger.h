#pragma once

#include "orn/events/EventSubscription.h"
#include "orn/foundation/Error.h"
#include "orn/text/Quark.h"
#include "orn/threading/CriticalSection.h"

#include <set>
#include <string>

/* What the ledger throws at a paint that the house does not stock. */
class NotStocked : public ORN::OrnError {
  public:
    explicit NotStocked(Quark paint);
    Quark paint() const { return paint_; }

  private:
    Quark paint_;
};

/* Writes down, once each, the paints that are announced as mixed. */
class Ledger final : public EVSubscription<Quark> {
  public:
    explicit Ledger(EVSubscriptionList<Quark> &mixed);
    ~Ledger() override;

    void notify(Quark paint) override;
    std::wstring list() const;

  private:
    mutable OrnCriticalSection section_{L"ledger"};
    std::set<Quark, QuarkCollatesLess> paints_;
};
