#include "tools/quiver-gen/schema/Checks.h"
namespace quiver_gen::schema
{
void CheckComponents(const SSchemaSet&, const SOrder&, CDiagnostics&)
{
}
} // namespace quiver_gen::schema
