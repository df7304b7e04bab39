#include "network/ServerTag.h"

#include "documents/modUTF8.h"
#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

constexpr TextView kSecurePort = u"443";
constexpr TextView kPlainPort = u"80";
constexpr TextView kLogonPage = u"/OruCadenceProjectTracking/logon.aspx";

}  // namespace

Text ComposeServerTag(TextView server, bool ssl, TextView port) {
  Text tag = u"<project-tracking server=\"";
  tag += server;
  tag += ssl ? u"\" ssl=\"yes\" port=\"" : u"\" ssl=\"no\" port=\"";
  tag += port;
  tag += u"\"/>";
  return tag;
}

Text BareNameTag(TextView name) { return ComposeServerTag(XMLEscape(name), false, kPlainPort); }

void ReadServerTag(TextView text, clsXMLTag& tag) {
  Skip([&] { tag.ParseTag(text); });
}

bool UsesSsl(const clsXMLTag& tag) { return SameText(tag.AttributeValue(u"ssl"), u"yes"); }

TextView DefaultPort(bool ssl) { return ssl ? kSecurePort : kPlainPort; }

Text ServerDocument(TextView tag) {
  Text document = u"\uFEFF";
  document += kServerProlog;
  document += tag;
  return document;
}

Text TrackingSite(const clsXMLTag& tag) {
  const bool ssl = UsesSsl(tag);
  Text address = ssl ? u"https://" : u"http://";
  address += tag.AttributeValue(u"server");
  const TextView port = tag.AttributeValue(u"port");
  // Compared as text: an empty port still adds a colon.
  if (port != DefaultPort(ssl)) {
    address += u':';
    address += port;
  }
  address += kLogonPage;
  return address;
}

Text WardenArguments(const clsXMLTag& tag) {
  Text arguments(tag.AttributeValue(u"server"));
  if (UsesSsl(tag)) arguments += u" /ssl";
  const TextView port = tag.AttributeValue(u"port");
  if (!port.empty()) {
    arguments += u" /port=";
    arguments += port;
  }
  return arguments;
}

}  // namespace marl
