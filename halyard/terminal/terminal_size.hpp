#pragma once

namespace halyard {

int terminalRows();     ///< 40 when unknown
int terminalColumns();  ///< 80 when unknown

}  // namespace halyard
