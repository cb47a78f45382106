#pragma once

// Stands before the system's listen(). While an object lives, listen() fails as it does when
// another program has begun to listen on the same port after both have bound it.
class FailingListen final {
public:
    FailingListen();
    ~FailingListen();
    FailingListen(const FailingListen&) = delete;
    FailingListen& operator=(const FailingListen&) = delete;
};
