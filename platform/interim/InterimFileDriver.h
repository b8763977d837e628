#pragma once

#include "platform/storage/Storage.h"

namespace storage {

/// Keeps memory databases in files of its own making, with a password that is checked.
class InterimFileDriver : public Driver
{
public:
    std::unique_ptr<Database> open(const OpenRequest &request) override;
    std::unique_ptr<Database> create(const OpenRequest &request, FileVersion version) override;
};

} // namespace storage
