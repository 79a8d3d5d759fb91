// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT
//
// A session manager for trials: SessionManager PROGRAM [ARGS...] starts a program in a session of
// its own and does what the lines of standard input say: "shutdown" and "checkpoint" want data to
// be saved, "cancel", "complete" and "die" tell what becomes of it. What the program answers is
// printed. Ends with the program, as the program does.

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

SmsConn client = nullptr;
IceConn connection = nullptr;

void Tell(const char *what)
{
    std::cout << what << std::endl;
}

/// A program that registers is asked to save at once, as the protocol wants it.
Status Register(SmsConn, SmPointer, char *)
{
    char *id = SmsGenerateClientID(client);
    SmsRegisterClientReply(client, id);
    std::free(id);
    SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    return 1;
}

void ForgetProperties(SmsConn, SmPointer, int count, SmProp **properties)
{
    for (int i = 0; i < count; ++i)
        SmFreeProperty(properties[i]);
    std::free(properties);
}

void Leave(SmsConn, SmPointer, int count, char **reasons)
{
    SmFreeReasons(count, reasons);
    client = nullptr;
    Tell("left");
}

Status Welcome(SmsConn newClient, SmPointer, unsigned long *mask, SmsCallbacks *calls, char **)
{
    client = newClient;
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    *calls = {};
    calls->register_client.callback = Register;
    calls->interact_request.callback = [](SmsConn, SmPointer, int) { Tell("wants to ask"); };
    calls->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    calls->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
    calls->save_yourself_phase2_request.callback = [](SmsConn, SmPointer) {};
    calls->save_yourself_done.callback = [](SmsConn, SmPointer, Bool) { Tell("saved"); };
    calls->close_connection.callback = Leave;
    calls->set_properties.callback = ForgetProperties;
    calls->delete_properties.callback = [](SmsConn, SmPointer, int, char **) {};
    calls->get_properties.callback = [](SmsConn, SmPointer) {};
    return 1;
}

void Obey(const std::string &word)
{
    if (!client)
        return;
    if (word == "shutdown")
        SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleAny, False);
    else if (word == "checkpoint")
        SmsSaveYourself(client, SmSaveBoth, False, SmInteractStyleNone, False);
    else if (word == "cancel")
        SmsShutdownCancelled(client);
    else if (word == "complete")
        SmsSaveComplete(client);
    else if (word == "die")
        SmsDie(client);
    IceFlush(connection);
}

IceConn Accept(IceListenObj listener)
{
    IceAcceptStatus status = IceAcceptFailure;
    IceConn accepted = IceAcceptConnection(listener, &status);
    while (accepted && IceConnectionStatus(accepted) == IceConnectPending)
        IceProcessMessages(accepted, nullptr, nullptr);
    return accepted;
}

/// Until the program ends; returns how.
int Serve(IceListenObj listener, pid_t program)
{
    bool commanded = true;
    for (;;) {
        int status = 0;
        if (waitpid(program, &status, WNOHANG) == program)
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        std::array<pollfd, 3> ends = {
            {{commanded ? STDIN_FILENO : -1, POLLIN, 0},
             {IceGetListenConnectionNumber(listener), POLLIN, 0},
             {connection ? IceConnectionNumber(connection) : -1, POLLIN, 0}}};
        if (poll(ends.data(), ends.size(), 100) <= 0)
            continue;
        std::string word;
        if (ends[0].revents && (commanded = bool(std::getline(std::cin, word))))
            Obey(word);
        if (ends[1].revents)
            connection = Accept(listener);
        if (ends[2].revents &&
            IceProcessMessages(connection, nullptr, nullptr) != IceProcessMessagesSuccess)
            connection = nullptr;
    }
}

} // namespace

int main(int argc, char *argv[])
{
    std::array<char, 256> fault{};
    int count = 0;
    IceListenObj *listeners = nullptr;
    IceSetIOErrorHandler([](IceConn) {});
    if (argc < 2 ||
        !SmsInitialize(
            "trial", "1", Welcome, nullptr, [](char *) -> Bool { return True; }, int(fault.size()),
            fault.data()) ||
        !IceListenForConnections(&count, &listeners, int(fault.size()), fault.data())) {
        std::cerr << fault.data() << '\n';
        return 2;
    }
    // One way in, from this machine alone.
    IceListenObj *listener = std::find_if(listeners, listeners + count - 1, [](IceListenObj each) {
        return std::string(IceGetListenConnectionString(each)).rfind("unix/", 0) == 0;
    });
    IceSetHostBasedAuthProc(*listener, [](char *) -> Bool { return True; });
    setenv("SESSION_MANAGER", IceGetListenConnectionString(*listener), 1);
    const pid_t program = fork();
    if (program == 0) {
        execvp(argv[1], argv + 1);
        _exit(127);
    }
    return Serve(*listener, program);
}
