// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DialogPlace.h"
#include "MdFind.h"

#include <QDialog>

#include <array>
#include <functional>

class MdSequenceEdition;
class QComboBox;
class QFrame;
class QLabel;
class QPushButton;
class QTabBar;
class QVBoxLayout;
class SQEditSequence;

/// What the find dialog works with; all of it lives longer than the dialog.
struct FindParts {
    MdFind &find;
    const MdSequenceEdition &sequences;
    /// Scrolls the hit into sight and returns where it stands.
    std::function<DialogPlace::Sight()> ShowHit;
};

/// The find dialog. It opens as it was left, the defined sequence in the form of the shown view and
/// selected: every way out is Cancel and stores what is chosen. The panels of the tabs that are not
/// chosen stand out of sight and are disabled.
class frmFind final : public QDialog
{
    Q_OBJECT

  public:
    explicit frmFind(const FindParts &parts, QWidget *parent = nullptr);

    void reject() override;

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    void MakeTabs();
    QVBoxLayout *MakePanel(FindKind kind, QWidget *field, QWidget *beside = nullptr);
    void MakeComboPanel(FindKind kind, QComboBox *combo);
    void MakeDefinedPanel();
    void MakeButtons(FindKind kind);
    void SetLeastSize();
    void Restore();

    void ChooseTab(int tab);
    void PlacePanels();
    void EnableDefined();
    void ChooseMode(Representation mode);
    QByteArray SequenceOf(FindKind kind) const;
    void FindNext(FindKind kind);
    void StandBeside(const DialogPlace::Sight &sight);

    QPushButton *FindButton(FindKind kind) const { return m_findButtons[size_t(kind)]; }

    FindParts m_parts;
    QTabBar *tbsFind;
    QFrame *m_body; ///< below the tabs, behind the panels
    QComboBox *ComboSend;
    QComboBox *ComboReceive;
    SQEditSequence *AXEditFind;
    QLabel *m_keyNote; ///< how to search from the field, where Enter does not
    std::array<QWidget *, FindKindCount> picOptions{};
    std::array<QWidget *, FindKindCount> m_fields{}; ///< first of each panel
    std::array<QPushButton *, FindKindCount> m_findButtons{};
};
