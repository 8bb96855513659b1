#include "print/picture_files.h"

namespace tallwick {
namespace {

constexpr int kSmallest = 0;  // the "quality" of a PNG file is its size

}  // namespace

int WritePictureFiles(const std::vector<QImage>& pictures, const std::string& stem) {
  int written = 0;
  for (const QImage& picture : pictures) {
    const QString path = QString::fromStdString(stem + "-" + std::to_string(++written) + ".png");
    if (!picture.save(path, "PNG", kSmallest)) return 0;
  }
  return written;
}

}  // namespace tallwick
