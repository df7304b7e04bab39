#pragma once

#include "documents/clsXMLTag.h"
#include "platform/Text.h"

namespace marl {

// A server is described by one line of XML, which is stored, compared and handed on as text:
//   <project-tracking server="HOST" ssl="no" port="80"/>

/// The tag with these three values as they stand: a name that holds a double quote cuts its
/// attribute short.
Text ComposeServerTag(TextView server, bool ssl, TextView port);

/// The tag of a bare host name: escaped, without SSL, on port 80.
Text BareNameTag(TextView name);

/// True when the text is a tag and no bare host name.
constexpr bool IsServerTag(TextView server) { return server.starts_with(u'<'); }

/// Takes a tag apart. An attribute that stands there twice ends the reading; those before count.
void ReadServerTag(TextView text, clsXMLTag& tag);

/// True when the attribute `ssl` says "yes", in any case.
bool UsesSsl(const clsXMLTag& tag);

/// "443" or "80".
TextView DefaultPort(bool ssl);

/// The prolog that stands in front of the tag in a server document.
constexpr TextView kServerProlog = u"<?xml version=\"1.0\" standalone=\"no\"?>";

/// What the tracking server component takes: U+FEFF, the prolog and the tag, without a line end.
Text ServerDocument(TextView tag);

/// Address of the server's tracking site. The port stands in it unless it is the scheme's own.
Text TrackingSite(const clsXMLTag& tag);

/// What the Administrator is started with: the server, " /ssl" where it is used, and " /port="
/// with the port where one is given.
Text WardenArguments(const clsXMLTag& tag);

}  // namespace marl
