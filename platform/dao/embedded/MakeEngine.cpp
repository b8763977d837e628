// The one place that knows which drivers this program has.
#include "platform/dao/embedded/EmbeddedEngine.h"

#include "platform/dbf/DbfDriver.h"
#include "platform/jet/JetDatabase.h"

namespace dao {

std::unique_ptr<DBEngine> makeEmbeddedEngine()
{
    return std::make_unique<EmbeddedEngine>(std::make_unique<jet::JetDriver>(), std::make_unique<dbf::DbfDriver>());
}

} // namespace dao
