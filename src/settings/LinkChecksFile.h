#pragma once

#include "core/RunError.h"

#include <QDateTime>
#include <QHash>
#include <QString>

// "LinkChecks.conf" in the program folder: when each address was last checked and what came of
// it, so that a check of many links asks again only about those not checked lately. An INI file
// of Vantrel's own, one entry an address in the array [Checks] (address, when in UTC as ISO 8601,
// verdict, status, newAddress), replaced as a whole and atomically each time it is written. An
// entry that cannot be read is left out.
namespace LinkChecksFile {

inline constexpr char kFileName[] = "LinkChecks.conf";

struct Check
{
    QDateTime when; // UTC
    QString verdict; // "fine", "moved", "dead", "failing", "not-checked"
    int status = 0;
    QString newAddress;

    bool operator==(const Check&) const = default;
};

using Checks = QHash<QString, Check>; // by address

QString path();
Checks read(const QString& path);
RunError write(const QString& path, const Checks& checks);

} // namespace LinkChecksFile
