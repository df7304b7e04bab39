// Reading documents: every element name and every attribute is visited once.

#include <expat.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <pugixml.hpp>
#include <rapidxml/rapidxml.hpp>
#include <string>

#include "bench/Race.h"
#include "documents/clsXMLEngine.h"
#include "documents/clsXMLTag.h"
#include "platform/memory/OneFile.h"

namespace {

std::size_t g_live = 0;
std::size_t g_peak = 0;

}  // namespace

// Counts allocations, for the goal on memory.
void* operator new(std::size_t size) {
  void* const block = std::malloc(size);
  if (!block) throw std::bad_alloc();
  g_live += malloc_usable_size(block);
  g_peak = std::max(g_peak, g_live);
  return block;
}
void operator delete(void* block) noexcept {
  if (block) g_live -= malloc_usable_size(block);
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace marl {
namespace {

std::string Skin() {
  std::string text = "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<skin>\r\n";
  const char* const names[] = {"back", "title", "hover", "frame", "icons", "label", "grid"};
  for (int i = 0; text.size() < 1000; ++i) {
    text += " <" + std::string(names[i % 7]) + " color=\"" + std::to_string(16777215 - i * 321) +
            "\" font=\"Arial|9|bold\" wide=\"" + std::to_string(i) + "\"/>\r\n";
  }
  return text + "</skin>\r\n";
}

/// A project with 30 languages and this many documents for each.
std::string Project(int documents) {
  std::string text =
      "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<project name=\"Manuals\">\r\n"
      " <target-files shortlang=\"yes\"/>\r\n";
  const char* const languages[] = {
      "fr\" description=\"French (Fran\xC3\xA7"
      "ais)",
      "de\" description=\"German (Germany)", "pt-BR\" description=\"Portugu\xC3\xAAs &amp; Brasil"};
  for (int language = 0; language < 30; ++language) {
    text += " <language lc=\"" + std::string(languages[language % 3]) + "\">\r\n";
    for (int i = 0; i < documents; ++i) {
      text += "  <document path=\"fr\\chapter " + std::to_string(i / 40) + "\\page " +
              std::to_string(i) + ".doc\" words=\"" + std::to_string(i * 37 % 5000) +
              "\" state=\"translated\" owner=\"A. Smith\"/>\r\n";
    }
    text += " </language>\r\n";
  }
  return text + "</project>\r\n";
}

/// Sums over a document, which must be the same for every reader.
struct Sum {
  std::size_t elements = 0;
  std::size_t attributes = 0;
  std::size_t firsts = 0;  // first characters of names and values

  bool operator==(const Sum&) const = default;
};

Sum ReadOurs(const FileSystem& file) {
  Sum sum;
  clsXMLEngine engine(file);
  clsXMLTag tag;
  XMLToken token;
  if (!engine.OpenDocument(u"a.qprx")) return sum;
  for (;;) {
    const XMLTokenKind kind = engine.GetToken(token);
    if (kind == xtEndOfDocument) return sum;
    if (kind != xtOpenTag && kind != xtEmptyTag) continue;
    tag.ParseTag(token);
    ++sum.elements;
    sum.firsts += tag.name().front();
    const std::int32_t count = tag.AttributeCount();
    for (std::int32_t i = 1; i <= count; ++i) {
      ++sum.attributes;
      sum.firsts += tag.AttributeValue(i).front();
    }
  }
}

Sum ReadRapidXml(const std::string& text) {
  Sum sum;
  std::string copy = text;  // it modifies its input
  rapidxml::xml_document<char> document;
  document.parse<rapidxml::parse_fastest>(copy.data());
  const auto visit = [&sum](auto&& self, const rapidxml::xml_node<char>* node) -> void {
    for (; node; node = node->next_sibling()) {
      if (node->type() != rapidxml::node_element) continue;
      ++sum.elements;
      sum.firsts += static_cast<unsigned char>(*node->name());
      for (const auto* a = node->first_attribute(); a; a = a->next_attribute()) {
        ++sum.attributes;
        sum.firsts += static_cast<unsigned char>(*a->value());
      }
      self(self, node->first_node());
    }
  };
  visit(visit, document.first_node());
  return sum;
}

Sum ReadPugiXml(const std::string& text, unsigned options) {
  Sum sum;
  pugi::xml_document document;
  document.load_buffer(text.data(), text.size(), options, pugi::encoding_utf8);
  const auto visit = [&sum](auto&& self, pugi::xml_node node) -> void {
    for (; node; node = node.next_sibling()) {
      if (node.type() != pugi::node_element) continue;
      ++sum.elements;
      sum.firsts += static_cast<unsigned char>(*node.name());
      for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
        ++sum.attributes;
        sum.firsts += static_cast<unsigned char>(*a.value());
      }
      self(self, node.first_child());
    }
  };
  visit(visit, document.first_child());
  return sum;
}

Sum ReadExpat(const std::string& text) {
  Sum sum;
  const XML_Parser parser = XML_ParserCreate("UTF-8");
  XML_SetUserData(parser, &sum);
  XML_SetStartElementHandler(parser, [](void* data, const XML_Char* name, const XML_Char** list) {
    Sum& all = *static_cast<Sum*>(data);
    ++all.elements;
    all.firsts += static_cast<unsigned char>(*name);
    for (; *list; list += 2) {
      ++all.attributes;
      all.firsts += static_cast<unsigned char>(*list[1]);
    }
  });
  XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1);
  XML_ParserFree(parser);
  return sum;
}

/// The minimum for any reader: finds each "<" and the next ">".
std::size_t Scan(const std::string& text) {
  std::size_t found = 0;
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto next = [&](char wanted) {
    at = static_cast<const char*>(std::memchr(at, wanted, static_cast<std::size_t>(end - at)));
    if (!at) return false;
    ++found;
    ++at;
    return true;
  };
  while (next('<') && next('>')) {
  }
  return found;
}

/// The same compiled from a loop, without the library's hand-written search; shown for comparison
/// only.
std::size_t ScanByBytes(const std::string& text) {
  std::size_t found = 0;
  char wanted = '<';
  for (const char byte : text) {
    if (byte != wanted) continue;
    ++found;
    wanted = wanted == '<' ? '>' : '<';
  }
  return found;
}

void Measure(const std::string& name, const std::string& text, int rounds, int repeats, bool peers,
             bench::Goals& goals) {
  const OneFile file(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  const Sum expected = ReadOurs(file);
  if (expected != ReadRapidXml(text) || expected != ReadPugiXml(text, pugi::parse_minimal) ||
      expected != ReadExpat(text) || Scan(text) != ScanByBytes(text)) {
    std::puts("the readers do not agree");
    std::exit(2);
  }

  bench::Race race(name);
  race.Add("ours", [&] { bench::Keep(ReadOurs(file)); });
  race.Add("rapidxml fastest", [&] { bench::Keep(ReadRapidXml(text)); });
  race.Add("pugixml minimal", [&] { bench::Keep(ReadPugiXml(text, pugi::parse_minimal)); });
  race.Add("pugixml", [&] { bench::Keep(ReadPugiXml(text, pugi::parse_default)); });
  race.Add("expat", [&] { bench::Keep(ReadExpat(text)); });
  race.Add("scan", [&] { bench::Keep(Scan(text)); });
  race.Add("scan by bytes", [&] { bench::Keep(ScanByBytes(text)); });
  race.Run(rounds, repeats, static_cast<double>(text.size()));

  if (peers) {
    goals.AtLeast("xml-" + name + "-rapidxml", race.Against("rapidxml fastest"), 1);
    goals.AtLeast("xml-" + name + "-pugixml", race.Against("pugixml"), 1.7);
  }
  goals.AtLeast("xml-" + name + "-expat", race.Against("expat"), 10);
  goals.AtMost("xml-" + name + "-scan", 1 / race.Against("scan"), 4);

  const std::size_t before = g_live;
  g_peak = g_live;
  ReadOurs(file);
  const double allowed = static_cast<double>(text.size()) * (1 + sizeof(char16_t));
  if (peers) {
    goals.AtMost("xml-" + name + "-memory", static_cast<double>(g_peak - before) / allowed, 1);
  }
}

/// A hundred megabytes of bad input: as fast per byte as ten megabytes of the same, and no more
/// memory than the file and one decoded copy.
void MeasureBad(const std::string& name, const std::string& head, const std::string& pattern,
                bench::Goals& goals) {
  constexpr std::size_t kSmall = 10'000'000;
  constexpr std::size_t kSpare = 64 * 1024;  // for windows and short tags
  double seconds[2] = {};
  double memory = 0;
  for (const std::size_t times : {std::size_t{1}, std::size_t{10}}) {
    const std::size_t size = times * kSmall;
    std::string text = head;
    while (text.size() < size) text += pattern;
    const OneFile file(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    double& best = seconds[times == 1 ? 0 : 1];
    for (int round = 0; round < 3; ++round) {
      const std::size_t before = g_live;
      g_peak = g_live;
      const double start = bench::Now();
      std::size_t units = 0;
      {
        clsXMLEngine engine(file);
        engine.OpenDocument(u"a.qprx");
        TextView token;
        while (engine.GetToken(token) != xtEndOfDocument) units += token.size();
      }
      bench::Keep(units);
      const double taken = bench::Now() - start;
      if (round == 0 || taken < best) best = taken;
      memory = static_cast<double>(g_peak - before) /
               static_cast<double>(text.size() * (1 + sizeof(char16_t)) + kSpare);
    }
    std::printf("%-16s %3zu MB %12.3f us %9.1f MB/s\n", name.c_str(), 10 * times, best * 1e6,
                static_cast<double>(text.size()) / best / 1e6);
  }
  goals.AtMost("xml-" + name + "-linear", seconds[1] / seconds[0] / 10, 2);
  goals.AtMost("xml-" + name + "-memory", memory, 1);
}

}  // namespace
}  // namespace marl

int main() {
  // Memory stays with the process, so that page faults do not distort the times.
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 2'000'000'000);
  marl::bench::Goals goals;
  marl::Measure("skin", marl::Skin(), 30, 2000, false, goals);
  marl::Measure("3mb", marl::Project(1000), 30, 1, true, goals);
  marl::Measure("50mb", marl::Project(16000), 7, 1, true, goals);
  marl::MeasureBad("text", "", "x", goals);
  marl::MeasureBad("comment", "<!--", "->", goals);
  marl::MeasureBad("cdata", "<![CDATA[", "]>", goals);
  marl::MeasureBad("doctype", "", "<!DOCTYPE>", goals);
  marl::MeasureBad("tag", "<a", " b=\"c\"", goals);
  marl::MeasureBad("angles", "", "<>", goals);
  marl::MeasureBad("marks", "", "\xEF\xBB\xBF", goals);
  marl::MeasureBad("leads", "", "\xC3", goals);
  marl::MeasureBad("utf16", "\xFF\xFE", std::string("<\0a\0>\0", 6), goals);
  goals.Tell();
}
