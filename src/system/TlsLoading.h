// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TlsSession.h"

#include <memory>

struct LoadedTls {
    std::unique_ptr<TlsSession> session; ///< null after a failure
    Result state;
};

/// A session of the module beside the program, which stays loaded from then on. On any
/// thread.
LoadedTls LoadTls();
