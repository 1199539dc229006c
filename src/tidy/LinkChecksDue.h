#pragma once

#include "LinkCheck.h"
#include "settings/LinkChecksFile.h"

// Which links a check asks about again, and what it remembers of each answer, through the side
// file LinkChecks.conf: a link checked within the last day is not asked about again unless a
// person says so; its last answer stands for it.
namespace LinkChecksDue {

inline constexpr qint64 kFreshSeconds = 24 * 60 * 60;

struct Split
{
    QList<LinkCheck::Link> due;             // to be asked about
    QList<LinkCheck::Outcome> remembered;   // checked lately: their last answers
};

Split split(const QList<LinkCheck::Link>& links, const LinkChecksFile::Checks& checks, const QDateTime& now,
            bool askAgain);
// Keeps the outcome's answer for its address (a link not checked is not kept).
void remember(LinkChecksFile::Checks& checks, const LinkCheck::Outcome& outcome);

QString verdictKey(LinkCheck::Verdict verdict);
LinkCheck::Verdict verdictOf(const QString& key);

} // namespace LinkChecksDue
