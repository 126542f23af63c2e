#pragma once

// A table of editable settings: a derived table fills itself with its rows in InitSettings().
// Tables are plain values, copied between a dialog and its worker.
class WRegSetting {
public:
    virtual void InitSettings() = 0;

protected:
    ~WRegSetting() = default;
};
