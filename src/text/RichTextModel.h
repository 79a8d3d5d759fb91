// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TextStyle.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QObject>

#include <deque>

/// The content of a rich-text box: 8-bit text with style runs, caret, selection and read-only
/// state. It knows nothing of widgets; a staging box is a model alone.
///
/// Positions are absolute: they count every character ever appended, so a character keeps its
/// position when older ones are cut from the front. The content is [Begin(), End()).
///
/// Invariants: the runs cover the content without gaps, neighbours differ in style; caret and
/// anchor lie in [Begin(), End()].
class RichTextModel final : public QObject
{
    Q_OBJECT

  public:
    /// An append beyond this many characters cuts TrimLength from the front.
    static constexpr qsizetype MaxViewLength = 128000;
    static constexpr qsizetype TrimLength = 2048;
    /// Bursts outrun that trimming; beyond this many characters all but MaxViewLength are cut.
    static constexpr qsizetype HardLimit = 1048576;

    struct StyleRun {
        qint64 end; ///< position behind its last character
        TextStyle style;
    };

    using QObject::QObject;

    qint64 Begin() const { return m_begin; }
    qint64 End() const { return m_begin + m_text.size(); }
    qsizetype Length() const { return m_text.size(); }
    /// The whole content; valid until the next change.
    QByteArrayView Bytes() const { return m_text; }
    uchar ByteAt(qint64 position) const;
    /// The run that holds the character at the position, which must lie in [Begin(), End()).
    const StyleRun &RunAt(qint64 position) const;
    const std::deque<StyleRun> &Runs() const { return m_runs; }

    /// Notes for the last characters, as many as there are bytes, which of them stand for a byte 0:
    /// the text has no character for it. Nothing but a painter asks.
    void NoteZeros(QByteArrayView bytes);
    bool StandsForZero(qint64 position) const;

    /// Grows with every change that is not an append or a cut from the front; a layout that was
    /// made for another revision is void.
    quint64 EditRevision() const { return m_editRevision; }

    /// Appends in the given style, then trims as TrimView does.
    void AppendStyled(QByteArrayView text, const TextStyle &style);
    /// What AppendStyled would leave of a content of that length.
    static constexpr qint64 LengthAfterAppend(qint64 length, qint64 by)
    {
        length += by;
        return length > HardLimit       ? qint64(MaxViewLength)
               : length > MaxViewLength ? length - TrimLength
                                        : length;
    }

    /// Appends without trimming, and without a signal; KeepLast ends it.
    void Extend(QByteArrayView text, const TextStyle &style);
    /// Cuts all but the last so many characters.
    void KeepLast(qint64 count);
    /// Cuts the oldest TrimLength characters if there are more than MaxViewLength.
    void TrimView();
    /// Appends all styled content of the source, empties the source and trims this model. Nothing
    /// happens, trimming included, if the source is empty.
    void MoveViewContent(RichTextModel &source);

    /// Replaces the content, caret and selection go to the start.
    void SetText(QByteArrayView text, const TextStyle &style);
    /// Replaces [from, to) and puts the caret behind the new text. For the user's own typing.
    void Replace(qint64 from, qint64 to, QByteArrayView text, const TextStyle &style);

    qint64 Caret() const { return m_caret; }
    qint64 Anchor() const { return m_anchor; }
    qint64 SelectionStart() const { return qMin(m_caret, m_anchor); }
    qint64 SelectionEnd() const { return qMax(m_caret, m_anchor); }
    bool HasSelection() const { return m_caret != m_anchor; }
    QByteArrayView SelectedText() const;
    /// Positions outside the content are moved to its nearer end.
    void Select(qint64 anchor, qint64 caret);

    bool ReadOnly() const { return m_readOnly; }
    void SetReadOnly(bool readOnly);

    /// Position of the first match at or after from, -1 if there is none. Letters of code page
    /// 1252 match in either case. An empty pattern matches nothing.
    qint64 Find(QByteArrayView pattern, qint64 from) const;

  Q_SIGNALS:
    /// Content, selection or read-only state changed.
    void Changed();

  private:
    void AppendRun(qint64 end, const TextStyle &style);
    void MoveZeros(qint64 from, qint64 to, qint64 behind);
    void CutFront(qsizetype count);
    void Trim();

    QByteArray m_text;
    std::deque<StyleRun> m_runs;
    std::deque<qint64> m_zeros; ///< positions, ascending
    qint64 m_begin = 0;
    qint64 m_caret = 0;
    qint64 m_anchor = 0;
    quint64 m_editRevision = 0;
    bool m_readOnly = false;
};
