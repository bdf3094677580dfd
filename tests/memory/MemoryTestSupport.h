// Helpers shared by the memory tests.
#pragma once

#include "utils/memory/Manager.h"

// Puts the manager's limits back whatever a test does.
class LimitsGuard {
public:
    explicit LimitsGuard(const BrmUtils::Memory::MemManager::Limits& limits)
        : saved_(BrmUtils::Memory::GetMemManager().GetLimits()) {
        BrmUtils::Memory::GetMemManager().SetLimits(limits);
    }
    ~LimitsGuard() { BrmUtils::Memory::GetMemManager().SetLimits(saved_); }

private:
    BrmUtils::Memory::MemManager::Limits saved_;
};
