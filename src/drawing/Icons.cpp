// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QResource>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace
{

/// A folder of the resources; a directory of files would ask for the facts of each entry.
class Folder final : public QResource
{
  public:
    explicit Folder(const QString &path) : QResource(path) {}
    using QResource::children;
};

/// A folder with the bare pixels of a picture in each size. One is read when it is first shown: the
/// toolkit's own icon of several files reads all of them at once, which the first window would wait
/// for.
class PictureIcon final : public QIconEngine
{
  public:
    /// The folder is one of the program's resources.
    explicit PictureIcon(const QString &folder) : m_folder(folder)
    {
        for (const QString &picture : Folder(folder).children())
            m_sides.push_back(picture.first(picture.indexOf(u'.')).toInt());
        std::sort(m_sides.begin(), m_sides.end());
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal scale = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, pixmap((QSizeF(rect.size()) * scale).toSize(), mode, state));
    }

    /// Square, and no larger than the largest picture; between two sizes the larger is scaled
    /// down. What is disabled looks as the style has it.
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        if (m_sides.empty())
            return {};
        const int side = std::min({size.width(), size.height(), m_sides.back()});
        QPixmap &kept = m_kept[{side, mode}];
        if (kept.isNull() && side > 0)
            kept = mode == QIcon::Normal ? Read(side) : QIcon(Read(side)).pixmap(size, 1.0, mode);
        return kept;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int side : m_sides)
            sizes.append({side, side});
        return sizes;
    }

    QIconEngine *clone() const override { return new PictureIcon(*this); }

  private:
    QPixmap Read(int side) const
    {
        const int stored = *std::lower_bound(m_sides.cbegin(), m_sides.cend(), side);
        const QResource picture(m_folder + QStringLiteral("/%1.rgba").arg(stored));
        const QByteArray pixels = picture.uncompressedData();
        if (pixels.size() != qsizetype(stored) * stored * 4)
            return {};
        const QImage image(reinterpret_cast<const uchar *>(pixels.constData()), stored, stored,
                           QImage::Format_RGBA8888_Premultiplied);
        return QPixmap::fromImage(side == stored ? image
                                                 : image.scaled(side, side, Qt::IgnoreAspectRatio,
                                                                Qt::SmoothTransformation));
    }

    QString m_folder;
    std::vector<int> m_sides; ///< in pixels, ascending
    std::map<std::pair<int, QIcon::Mode>, QPixmap> m_kept;
};

} // namespace

QIcon Icons::Named(const char *name)
{
    return QIcon(new PictureIcon(QStringLiteral(":/icons/") + QLatin1String(name)));
}
