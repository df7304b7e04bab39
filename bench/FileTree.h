#pragma once

#include <array>
#include <string>
#include <string_view>

namespace marl::bench {

/// A tree of 100,000 files in 1,000 folders, three levels deep, a quarter of the files wanted.
constexpr int kTops = 10;
constexpr int kMiddles = 9;
constexpr int kLeaves = 11;
constexpr int kFolders =
    kTops * (1 + kMiddles * kLeaves);  // those in the middle contain only folders
constexpr int kFilesPerFolder = 100;
constexpr int kFiles = kFolders * kFilesPerFolder;
constexpr int kWanted = kFiles / 4;

constexpr std::u16string_view kFilters = u"*.qtd|*.obj|*.mif|*.fmp|";

constexpr std::array<std::string_view, 16> kExtensions = {
    "qtd", "doc", "html", "txt", "OBJ", "xml",  "docx", "rtf",
    "mif", "ini", "sgml", "log", "FMP", "qprx", "xlsx", "bak"};

/// Calls `folder` for each folder's path below the root, parents first, and `file` for each
/// file's, all with `slash` between the names.
template <typename Folder, typename File>
void ForEachOfTree(char slash, Folder folder, File file) {
  const auto fill = [&](const std::string& path) {
    for (int i = 0; i < kFilesPerFolder; ++i) {
      file(path + slash + "document " + std::to_string(i) + "." +
           std::string(kExtensions[static_cast<std::size_t>(i) % kExtensions.size()]));
    }
  };
  for (int top = 0; top < kTops; ++top) {
    const std::string topPath = "language " + std::to_string(top);
    folder(topPath);
    fill(topPath);
    for (int middle = 0; middle < kMiddles; ++middle) {
      const std::string middlePath = topPath + slash + "chapter " + std::to_string(middle);
      folder(middlePath);
      for (int leaf = 0; leaf < kLeaves; ++leaf) {
        const std::string path = middlePath + slash + "section " + std::to_string(leaf);
        folder(path);
        fill(path);
      }
    }
  }
}

}  // namespace marl::bench
