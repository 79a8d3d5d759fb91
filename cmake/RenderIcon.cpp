// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT
//
// RenderIcon SVG TARGET SIZE...: draws the icon once for each size in pixels; "@" in TARGET stands
// for the size. A target that ends in ".rgba" gets the bare pixels, row by row, each as four bytes
// with its colours multiplied by its opacity. Runs while the program is built and is not installed.

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QTextStream>

namespace
{

bool Save(const QImage &image, const QString &target)
{
    if (!target.endsWith(QLatin1String(".rgba")))
        return image.save(target);
    const QImage pixels = image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    QFile file(target);
    return file.open(QIODevice::WriteOnly) &&
           file.write(reinterpret_cast<const char *>(pixels.constBits()), pixels.sizeInBytes()) ==
               pixels.sizeInBytes();
}

/// Returns what went wrong, or nothing.
QString Render(const QString &source, const QString &target, int size)
{
    QImageReader reader(source);
    reader.setScaledSize(QSize(size, size));
    const QImage image = reader.read();
    if (image.isNull())
        return source + QStringLiteral(": ") + reader.errorString();
    if (!QDir().mkpath(QFileInfo(target).path()) || !Save(image, target))
        return QStringLiteral("cannot write ") + target;
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    for (qsizetype i = 3; i < arguments.size(); ++i) {
        QString target = arguments[2];
        target.replace(u'@', arguments[i]);
        const QString fault = Render(arguments[1], target, arguments[i].toInt());
        if (!fault.isEmpty()) {
            QTextStream(stderr) << "RenderIcon: " << fault << '\n';
            return 1;
        }
    }
    return 0;
}
