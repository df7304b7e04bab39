#pragma once

#include <cstddef>
#include <map>
#include <memory>

#include "platform/Pictures.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

/// Decodes a picture file in memory (PNG and the other formats of the Windows Imaging Component),
/// premultiplied by alpha. Null if it is no picture, or larger than 16384 pixels in a direction.
/// COM must be initialised on the thread.
PicturePtr DecodePicture(const void* data, std::size_t size);

/// The pictures in the program's resources (RCDATA), each decoded at first use and kept while it is
/// shown.
class PicturesWin32 : public Pictures {
 public:
  ~PicturesWin32() override;
  PicturePtr Load(int id) override;
  /// Decodes on a separate thread.
  void Prepare(int id) override;

 private:
  struct Ahead {
    int id = 0;
    PicturePtr picture;
    UniqueThread thread;
  };
  static DWORD WINAPI DecodeAhead(void* ahead) noexcept;

  std::map<int, std::unique_ptr<Ahead>> ahead_;
  std::map<int, std::weak_ptr<const Picture>> shown_;
};

}  // namespace marl::win32
