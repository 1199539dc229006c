#pragma once

#include <QString>

// Secrets a door needs (the broker's password): kept in the desktop's secret store (the Secret
// Service, through QtKeychain), or, where no secret store answers, in a file of the program folder
// that only the user can read ("<key>.secret", mode 0600). Never in Vantrel.conf, never in the log.
namespace Secrets {

enum class Where { SecretStore, File, Nowhere };

// The secret store is asked for at most this long (a locked one may be waiting for a person).
inline constexpr int kStoreTimeoutMs = 5000;

// Keeps `value` under `key`; an empty value takes it away. Where it went.
Where store(const QString& key, const QString& value);
// The secret under `key`, empty when there is none; `where`, when given, says where it was found.
QString read(const QString& key, Where* where = nullptr);

// The file that stands in for the secret store.
QString filePath(const QString& key);

// Tests and machines with no desktop: the secret store is not asked at all.
void setStoreEnabled(bool enabled);

} // namespace Secrets
