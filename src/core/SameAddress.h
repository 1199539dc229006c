#pragma once

#include <QString>

// When two addresses are the same page, as a person would say: what differs only in the case of
// the scheme and host, a default port, a trailing slash, the fragment (a place within the page)
// or, when asked, the parameters that sites add to follow where a visit came from.
namespace SameAddress {

// The address in one spelling for each page: equal keys, the same page. An address that is no URL
// at all is its own key (trimmed).
QString key(const QString& address, bool dropTracking);

// Whether a query parameter is one of those added to follow visits: utm_* and the click ids of the
// big advertisers and mailers (fbclid, gclid, msclkid, mc_eid, ...).
bool isTrackingParameter(const QString& name);

} // namespace SameAddress
