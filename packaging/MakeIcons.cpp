// Makes the icon files of packaging/Icons out of the drawing and the pictures beside it; scripts/make-icons
// runs it.
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

QByteArray PngOf(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes;
}

void Put(QByteArray& bytes, quint32 value, int count) {
    for (int index = 0; index < count; ++index) {
        bytes.append(static_cast<char>((value >> (8 * index)) & 0xFF));
    }
}

/// The ICO format: a header of 6 bytes, one entry of 16 bytes for each picture, then the pictures, as PNG.
bool WriteIcon(const QString& path, const QList<QImage>& pictures) {
    constexpr int HeaderSize = 6;
    constexpr int EntrySize = 16;
    QByteArray header;
    QByteArray data;
    Put(header, 0, 2);
    Put(header, 1, 2);
    Put(header, static_cast<quint32>(pictures.size()), 2);
    const auto start = HeaderSize + EntrySize * pictures.size();
    for (const QImage& picture : pictures) {
        const QByteArray png = PngOf(picture);
        Put(header, static_cast<quint32>(picture.width()), 1);
        Put(header, static_cast<quint32>(picture.height()), 1);
        Put(header, 0, 2);
        Put(header, 1, 2);
        Put(header, 32, 2);
        Put(header, static_cast<quint32>(png.size()), 4);
        Put(header, static_cast<quint32>(start + data.size()), 4);
        data.append(png);
    }
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(header + data) == header.size() + data.size();
}

QImage Drawn(QSvgRenderer& drawing, int side) {
    QImage picture(side, side, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    return picture;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: larkspan-make-icons PACKAGING-FOLDER\n", stderr);
        return 2;
    }
    const QString folder = QFile::decodeName(argv[1]);
    bool isFine = true;
    for (const int side : {16, 24, 32, 48}) {
        const QImage picture(folder + QStringLiteral("/larkspan-%1.png").arg(side));
        isFine = !picture.isNull() &&
                 WriteIcon(folder + QStringLiteral("/Icons/larkspan%1x%1x256.ico").arg(side), {picture}) &&
                 isFine;
    }
    QSvgRenderer drawing(folder + QStringLiteral("/larkspan.svg"));
    QList<QImage> pictures;
    for (const int side : {16, 22, 24, 32, 48}) {
        pictures.append(Drawn(drawing, side));
    }
    isFine = drawing.isValid() && WriteIcon(folder + QStringLiteral("/Icons/larkspantray.ico"), pictures) &&
             isFine;
    return isFine ? 0 : 1;
}
