#pragma once

#include "documents/clsXMLTag.h"
#include "platform/Text.h"

namespace marl {

// A server is described by one line of XML, which is stored, compared and passed on as text:
//   <project-tracking server="HOST" ssl="no" port="80"/>

/// The tag with these three values, unescaped: a double quote in the name ends the attribute early.
Text ComposeServerTag(TextView server, bool ssl, TextView port);

/// The tag of a bare host name: escaped, without SSL, on port 80.
Text BareNameTag(TextView name);

/// True if the text is a tag, not a bare host name.
constexpr bool IsServerTag(TextView server) { return server.starts_with(u'<'); }

/// Parses a tag. A duplicate attribute ends the parsing; the attributes before it count.
void ReadServerTag(TextView text, clsXMLTag& tag);

/// True if the attribute `ssl` is "yes", in any letter case.
bool UsesSsl(const clsXMLTag& tag);

/// "443" or "80".
TextView DefaultPort(bool ssl);

/// The prolog before the tag in a server document.
constexpr TextView kServerProlog = u"<?xml version=\"1.0\" standalone=\"no\"?>";

/// The document that the tracking server component takes: U+FEFF, the prolog and the tag, without a
/// line end.
Text ServerDocument(TextView tag);

/// Address of the server's tracking site, with the port unless it is the scheme's default.
Text TrackingSite(const clsXMLTag& tag);

/// Command line arguments of the Administrator: the server, " /ssl" if it is used, and " /port="
/// with the port if there is one.
Text WardenArguments(const clsXMLTag& tag);

}  // namespace marl
