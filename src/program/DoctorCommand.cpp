// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DoctorCommand.h"

#include "CommandLine.h"
#include "PlainText.h"
#include "PortDoctor.h"
#include "PortListing.h"
#include "PortNumber.h"
#include "SystemPortFinder.h"
#include "UserLines.h"

#include <QRegularExpression>
#include <QTextStream>

namespace
{

enum Status { NothingInTheWay = 0, SomethingInTheWay = 1, NotWritten = 4 };

/// "COM3" stands for its device.
QString DeviceNamed(const QString &name, const PortDevices &devices)
{
    static const QRegularExpression number(QStringLiteral("^COM([0-9]{1,3})$"),
                                           QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = number.match(name);
    const QString device =
        match.hasMatch() ? devices.DeviceOf(match.captured(1).toInt()) : QString();
    return device.isEmpty() ? name : device;
}

QString NumbersText(const QList<int> &numbers)
{
    QString text;
    for (const int number : numbers)
        text += QStringLiteral("COM%1, ").arg(number);
    return text;
}

QMap<int, PortDevices::Meaning> MeaningsOf(const PortDevices &devices)
{
    QMap<int, PortDevices::Meaning> meanings;
    for (int number = LeastPortNumber; number <= MostPortNumber; ++number)
        meanings[number] = devices.MeaningOf(number);
    return meanings;
}

QList<DoctorReport> ExamineAll(const PortFinder &finder, const PortDevices &devices)
{
    QList<DoctorReport> reports;
    for (const ListedPort &listed : ListPortsAndAssigned(finder, MeaningsOf(devices))) {
        reports.append(ExaminePort(finder, listed.port.device, Examination::Facts, {}));
        reports.last().port.prepend(NumbersText(listed.numbers));
    }
    return reports;
}

DoctorReport ExamineOne(const CommandLine &line, const PortFinder &finder, const UserLines &user)
{
    const QString device = DeviceNamed(line.examined, user.devices);
    DoctorReport report =
        ExaminePort(finder, device, line.tries ? Examination::Try : Examination::Connect,
                    line.line ? LineSettingsText(*line.line) : user.comm.PortSettings());
    if (device != line.examined)
        report.port.prepend(line.examined.toUpper() + QStringLiteral(", "));
    return report;
}

} // namespace

int ExaminePorts(const CommandLine &line, QTextStream &output, QTextStream &errors)
{
    UserLines user;
    if (user.state.Failed())
        errors << "The settings could not be read. " << PlainText(user.state.Cause()) << Qt::endl;
    for (auto port = line.ports.cbegin(); port != line.ports.cend(); ++port)
        user.devices.AssignForRun(port.key(), port.value());
    const SystemPortFinder finder;
    const QList<DoctorReport> reports = line.examined.isEmpty()
                                            ? ExamineAll(finder, user.devices)
                                            : QList{ExamineOne(line, finder, user)};
    int status = NothingInTheWay;
    QString text = reports.isEmpty() ? QStringLiteral("No ports were found.\n") : QString();
    for (const DoctorReport &report : reports) {
        text += (text.isEmpty() ? QString() : QStringLiteral("\n")) + report.Text();
        if (report.HasFault())
            status = SomethingInTheWay;
    }
    output << text << Qt::flush;
    if (output.status() == QTextStream::Ok)
        return status;
    errors << "The text could not be written." << Qt::endl;
    return NotWritten;
}
