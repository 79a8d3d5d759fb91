// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrintDialogRequest.h"

#include <QPrintDialog>

class QCheckBox;

/// The toolkit's print dialog with what the program offers, and without what would have no effect.
/// What must not be overlooked stands above the part that the dialog opens collapsed.
class PrinterDialog final : public QPrintDialog
{
    Q_OBJECT

  public:
    /// The printer is set up as the user chooses.
    PrinterDialog(const PrintDialogRequest &request, const std::shared_ptr<QPrinter> &printer,
                  QWidget *owner);

    /// Once accepted. Takes the copies over from the printer, which would else make as many of each
    /// of them.
    PrinterChoice Choice() const;

  private:
    void HideWhatIsNotOffered();
    void ProposePdf();
    void Arrange();
    static void OrderTabs(const QWidgetList &page);

    PrintDialogRequest m_request;
    std::shared_ptr<QPrinter> m_printer;
    QCheckBox *CheckMarginText = nullptr;
};
