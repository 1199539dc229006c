#pragma once

#include <QString>

#include <optional>

// The rules for web addresses, in one place.
namespace WebAddress {

// An address a favourite or a list page can hold: http, https or ftp with a host, and no control
// character (a line end inside would break a shortcut's lines apart). Addresses are taken as
// browsers take them: raw blanks, quotes and brackets too.
bool isWebAddress(const QString& url);

// What a tree takes from another program's drop: text beginning with "http", in any case.
bool startsWithHttp(const QString& text);

// A name for a page that has no title of its own: the host of its address (the address itself
// when it has none).
QString nameFromAddress(const QString& address);

// An address given from outside (a command line, the bus): as a person would type it ("example.org"
// is http://example.org), taken only when it is http or https with a host. None otherwise: a file,
// a script or any other scheme is no page a caller from outside may open.
std::optional<QString> fromOutside(const QString& text);

} // namespace WebAddress
