#include "LinkChecksDue.h"

namespace LinkChecksDue {

QString verdictKey(LinkCheck::Verdict verdict)
{
    switch (verdict) {
    case LinkCheck::Verdict::Fine:
        return QStringLiteral("fine");
    case LinkCheck::Verdict::Moved:
        return QStringLiteral("moved");
    case LinkCheck::Verdict::Dead:
        return QStringLiteral("dead");
    case LinkCheck::Verdict::FailingForNow:
        return QStringLiteral("failing");
    case LinkCheck::Verdict::NotChecked:
        break;
    }
    return QStringLiteral("not-checked");
}

LinkCheck::Verdict verdictOf(const QString& key)
{
    for (const LinkCheck::Verdict verdict : {LinkCheck::Verdict::Fine, LinkCheck::Verdict::Moved, LinkCheck::Verdict::Dead,
                                             LinkCheck::Verdict::FailingForNow})
        if (verdictKey(verdict) == key)
            return verdict;
    return LinkCheck::Verdict::NotChecked;
}

Split split(const QList<LinkCheck::Link>& links, const LinkChecksFile::Checks& checks, const QDateTime& now,
            bool askAgain)
{
    Split result;
    for (const LinkCheck::Link& link : links) {
        const auto known = checks.constFind(link.address);
        const bool fresh = known != checks.cend() && known->when.isValid() && known->when <= now &&
                           known->when.secsTo(now) < kFreshSeconds &&
                           verdictOf(known->verdict) != LinkCheck::Verdict::NotChecked;
        if (askAgain || !fresh) {
            result.due.append(link);
            continue;
        }
        LinkCheck::Outcome outcome;
        outcome.key = link.key;
        outcome.address = link.address;
        outcome.verdict = verdictOf(known->verdict);
        outcome.status = known->status;
        outcome.newAddress = known->newAddress;
        outcome.reason = known->status ? QString::number(known->status) : QString();
        outcome.checked = known->when;
        result.remembered.append(outcome);
    }
    return result;
}

void remember(LinkChecksFile::Checks& checks, const LinkCheck::Outcome& outcome)
{
    if (outcome.verdict == LinkCheck::Verdict::NotChecked)
        return;
    checks.insert(outcome.address,
                  {outcome.checked.toUTC(), verdictKey(outcome.verdict), outcome.status, outcome.newAddress});
}

} // namespace LinkChecksDue
