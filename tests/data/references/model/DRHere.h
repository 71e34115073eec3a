#pragma once

/// Named by the page beside it.
class DRHere {
public:
    void open();
};
