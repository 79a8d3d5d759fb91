// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TlsLoading.h"

#include <QByteArray>

#include <array>
#include <climits>

#include <dlfcn.h>
#include <unistd.h>

namespace
{

/// Beside the program itself, wherever a link to it lies.
QByteArray ModuleName()
{
    std::array<char, PATH_MAX> program;
    const ssize_t length = ::readlink("/proc/self/exe", program.data(), program.size());
    const QByteArray path(program.data(), std::max<ssize_t>(length, 0));
    return path.left(path.lastIndexOf('/') + 1) + "modules/serimonde-tls.so";
}

} // namespace

/// It is never unloaded: a thread that nobody waits for may still be in it as the program ends.
LoadedTls LoadTls()
{
    void *module = ::dlopen(ModuleName().constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void *maker = module ? ::dlsym(module, TlsSessionMakerName) : nullptr;
    if (!maker)
        return {nullptr, Failure{QStringLiteral("TLS is not to be had: ") +
                                 QString::fromLocal8Bit(::dlerror())}};
    return {std::unique_ptr<TlsSession>(reinterpret_cast<TlsSessionMaker *>(maker)()), {}};
}
