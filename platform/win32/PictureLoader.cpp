#include "platform/win32/PictureLoader.h"

// The ids of the imaging component are not in the linked libraries.
#define INITGUID
#include <windows.h>
#include <objbase.h>
#include <wincodec.h>

#include <limits>

namespace marl::win32 {

namespace {

constexpr UINT kLargestSide = 16384;

}  // namespace

PicturePtr DecodePicture(const void* data, std::size_t size) {
  if (!data || size == 0 || size > std::numeric_limits<DWORD>::max()) return nullptr;
  void* made = nullptr;
  if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                              IID_IWICImagingFactory, &made))) {
    return nullptr;
  }
  const UniqueObject<IWICImagingFactory> factory(static_cast<IWICImagingFactory*>(made));

  IWICStream* rawStream = nullptr;
  if (FAILED(factory.get()->CreateStream(&rawStream))) return nullptr;
  const UniqueObject<IWICStream> stream(rawStream);
  // The stream only reads, although its parameter is not const.
  auto* const bytes = static_cast<BYTE*>(const_cast<void*>(data));
  if (FAILED(stream.get()->InitializeFromMemory(bytes, static_cast<DWORD>(size)))) return nullptr;

  IWICBitmapDecoder* rawDecoder = nullptr;
  if (FAILED(factory.get()->CreateDecoderFromStream(stream.get(), nullptr,
                                                    WICDecodeMetadataCacheOnDemand, &rawDecoder))) {
    return nullptr;
  }
  const UniqueObject<IWICBitmapDecoder> decoder(rawDecoder);
  IWICBitmapFrameDecode* rawFrame = nullptr;
  if (FAILED(decoder.get()->GetFrame(0, &rawFrame))) return nullptr;
  const UniqueObject<IWICBitmapFrameDecode> frame(rawFrame);

  IWICFormatConverter* rawConverter = nullptr;
  if (FAILED(factory.get()->CreateFormatConverter(&rawConverter))) return nullptr;
  const UniqueObject<IWICFormatConverter> converter(rawConverter);
  UINT width = 0;
  UINT height = 0;
  if (FAILED(converter.get()->Initialize(frame.get(), GUID_WICPixelFormat32bppPBGRA,
                                         WICBitmapDitherTypeNone, nullptr, 0.0,
                                         WICBitmapPaletteTypeCustom)) ||
      FAILED(converter.get()->GetSize(&width, &height)) || width == 0 || height == 0 ||
      width > kLargestSide || height > kLargestSide) {
    return nullptr;
  }
  const auto picture = std::make_shared<Picture>(static_cast<int>(width), static_cast<int>(height));
  const UINT stride = width * 4;
  if (FAILED(converter.get()->CopyPixels(nullptr, stride, stride * height,
                                         reinterpret_cast<BYTE*>(picture->pixels.data())))) {
    return nullptr;
  }
  return picture;
}

namespace {

PicturePtr DecodeResource(int id) {
  const HRSRC found = FindResourceW(nullptr, MAKEINTRESOURCEW(id), RT_RCDATA);
  const HGLOBAL loaded = found ? LoadResource(nullptr, found) : nullptr;
  if (!loaded) return nullptr;
  return DecodePicture(LockResource(loaded), SizeofResource(nullptr, found));
}

}  // namespace

PicturePtr PicturesWin32::Load(int id) {
  auto& shown = shown_[id];
  if (PicturePtr picture = shown.lock()) return picture;
  PicturePtr picture;
  if (const auto found = ahead_.find(id); found != ahead_.end()) {
    const std::unique_ptr<Ahead> ahead = std::move(found->second);
    ahead_.erase(found);
    WaitForSingleObject(ahead->thread.get(), INFINITE);
    picture = ahead->picture;
  } else {
    picture = DecodeResource(id);
  }
  shown = picture;
  return picture;
}

void PicturesWin32::Prepare(int id) {
  if (ahead_.contains(id)) return;
  auto ahead = std::make_unique<Ahead>();
  ahead->id = id;
  ahead->thread = UniqueThread(CreateThread(nullptr, 0, DecodeAhead, ahead.get(), 0, nullptr));
  if (ahead->thread) ahead_[id] = std::move(ahead);
}

PicturesWin32::~PicturesWin32() {
  for (const auto& [id, ahead] : ahead_) WaitForSingleObject(ahead->thread.get(), INFINITE);
}

DWORD WINAPI PicturesWin32::DecodeAhead(void* ahead) noexcept {
  auto& job = *static_cast<Ahead*>(ahead);
  if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) return 1;
  job.picture = DecodeResource(job.id);
  CoUninitialize();
  return 0;
}

}  // namespace marl::win32
