#pragma once

#include <QString>

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

} // namespace WebAddress
