// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <unistd.h>
#include <utility>

namespace velmora {

// An open file descriptor that is closed on every path out of its scope.
class FileDescriptor {
public:
    explicit FileDescriptor(int fd = -1)
        : m_fd(fd) {}
    ~FileDescriptor() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return m_fd; }
    // Gives the descriptor up without closing it.
    int release() { return std::exchange(m_fd, -1); }

private:
    int m_fd;
};

} // namespace velmora
