// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT
//
// RenderIcon SVG TARGET SIZE...: draws the icon once for each size in pixels; "@" in TARGET stands
// for the size. Runs while the program is built and is not installed.

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QTextStream>

namespace
{

/// Returns what went wrong, or nothing.
QString Render(const QString &source, const QString &target, int size)
{
    QImageReader reader(source);
    reader.setScaledSize(QSize(size, size));
    const QImage image = reader.read();
    if (image.isNull())
        return source + QStringLiteral(": ") + reader.errorString();
    if (!QDir().mkpath(QFileInfo(target).path()) || !image.save(target))
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
