// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ByteFace.h"
#include "DisplaySettings.h"
#include "DrawnTable.h"
#include "MouseHold.h"
#include "Telegram.h"

#include <QColor>

#include <array>

/// The bytes of one telegram in all representations, eight a row, with the times of the reads that
/// begin in it; a bar stands in the HEX in front of the first byte of a read. Bytes can be chosen
/// and copied.
class TelegramDump final : public DrawnTable
{
    Q_OBJECT

  public:
    explicit TelegramDump(QWidget *parent = nullptr);

    void Show(const Telegram &telegram);
    void SetColours(const DisplaySettings &display);

    /// What a copy holds.
    enum class Form { Rows, Hex, Text, Decimal, Binary };
    static constexpr int FormCount = int(Form::Binary) + 1;
    /// Of the chosen bytes, of all if none are.
    QString Copy(Form form) const;
    QByteArray ChosenBytes() const;

    static constexpr int BytesOfARow = 8;

    QStringList Headings() const override;
    qint64 RowCount() const override;
    Seen SeenRows() const override;
    QString CellText(qint64 row, int column) const override;
    QRect CellRect(qint64 row, int column) const override;
    qint64 CurrentRow() const override;
    bool IsChosen(qint64 row) const override;
    qint64 ChosenCount() const override;
    void Choose(qint64 row) override;

  Q_SIGNALS:
    /// Escape: back to where the telegram was chosen.
    void Left();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

  private:
    enum Column { Offset, Hex, Text, Decimal, Binary, Reads, ColumnCount };

    void MakeFace() override;
    void SetBars();
    void MakeCopies();
    qsizetype Rows() const;
    qsizetype Top() const;
    qsizetype RowsSeen() const;
    qsizetype ChosenFrom() const { return qMin(m_anchor, m_caret); }
    qsizetype ChosenTo() const { return qMax(m_anchor, m_caret); }
    QByteArrayView BytesOf(qsizetype row) const;
    QString ReadsOf(qsizetype row) const;
    bool BeginsRead(qsizetype place) const;
    int ColumnPlace(int column) const;
    qsizetype ByteAt(const QPoint &place) const;
    void MoveTo(qsizetype place, bool extend);
    void PaintRow(QPainter &painter, qsizetype row, qreal top) const;
    void PaintText(QPainter &painter, const QString &text, const QPointF &place) const;
    void SetInk();

    Telegram m_telegram;
    DisplaySettings m_display;
    QColor m_ground;
    QColor m_ink;
    ByteFace m_face;
    qreal m_baseline = 0;
    int m_rowHeight = 1;
    qsizetype m_longestReads = 0; ///< text of a row
    MouseHold m_hold;
    qsizetype m_caret = 0;
    qsizetype m_anchor = 0;
    bool m_chosen = false; ///< from anchor to caret, both included
};
