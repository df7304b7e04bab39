#include "network/TrackingServerClient.h"

#include "documents/clsXMLEngine.h"
#include "documents/clsXMLTag.h"
#include "network/ServerTag.h"
#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

class BuiltInClient : public Component {
 public:
  explicit BuiltInClient(const TrackingServerClient::Ports& ports) : ports_(ports) {}

  bool Call(TextView operation, std::vector<ComponentValue>& arguments, ComponentValue&,
            Text& failure) override {
    const Text* const document =
        arguments.size() == 1 ? std::get_if<Text>(&arguments.front()) : nullptr;
    const bool valid =
        SameText(operation, u"SetServer") && document && IsServerDocument(*document, ports_.files);
    Text name;
    if (valid) {
      const TextView element = TextView(*document).substr(1 + kServerProlog.size());
      if (ports_.registry.FromNarrow(ports_.registry.ToNarrow(element)) == element) return true;
      clsXMLTag tag;
      ReadServerTag(element, tag);
      name.append(u"\n\n").append(tag.AttributeValue(u"server"));
    }
    failure = ports_.strings.Get(IDS_SERVER_REFUSED) + name;
    return false;
  }

 private:
  TrackingServerClient::Ports ports_;
};

}  // namespace

bool IsServerDocument(TextView document, const FileSystem& files) {
  if (!document.starts_with(u'\uFEFF')) return false;
  clsXMLEngine engine(files);
  engine.OpenXMLW(document);
  Text token;
  if (engine.GetToken(token) != xtInstruction || token != kServerProlog) return false;
  if (engine.GetToken(token) != xtEmptyTag) return false;
  clsXMLTag tag;
  // Strict here: an element with a duplicate attribute is not well-formed.
  if (!Skip([&] { tag.ParseTag(token); })) return false;
  if (tag.name() != u"project-tracking" || tag.AttributeValue(u"server").empty()) return false;
  if (engine.GetToken(token) == xtText && token.find_first_not_of(u" \t\r\n") == Text::npos) {
    engine.GetToken(token);
  }
  return token.empty();
}

bool TrackingServerClient::SetServer(TextView document, Text& failure) {
  if (!component_) {
    Text reason;
    component_ = ports_.components.Create(u"Marl.TrackingServerClient", reason);
    if (!component_ && !reason.empty()) {
      failure = reason;
      return false;
    }
    if (!component_) component_ = std::make_unique<BuiltInClient>(ports_);
  }
  std::vector<ComponentValue> arguments{Text(document)};
  ComponentValue ignored;
  return component_->Call(u"SetServer", arguments, ignored, failure);
}

}  // namespace marl
