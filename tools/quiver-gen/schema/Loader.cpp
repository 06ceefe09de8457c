#include "tools/quiver-gen/schema/Loader.h"

#include "tools/quiver-gen/schema/Builder.h"
#include "tools/quiver-gen/schema/Checks.h"
#include "tools/quiver-gen/schema/Derivation.h"
#include "tools/quiver-gen/schema/Documents.h"
#include "tools/quiver-gen/schema/Draft.h"
#include "tools/quiver-gen/schema/Resolver.h"
#include "tools/quiver-gen/schema/Rules.h"

namespace quiver_gen::schema
{

// Each step relies on what the steps before it checked, so an error ends the work with its step.
bool LoadSchemas(const SLoadOptions& options, SSchemaSet& set, CDiagnostics& diagnostics)
{
    SDraft draft;
    ReadDocuments(options, set, draft, diagnostics);
    for (const SDocument& document : draft.documents)
        CheckRules(document, diagnostics);
    if (diagnostics.HasErrors())
        return false;
    for (std::size_t n = 0; n < draft.documents.size(); ++n)
        CBuilder(n, set, draft, diagnostics).Build();
    SOrder order;
    ResolveReferences(set, draft, order, diagnostics);
    if (diagnostics.HasErrors())
        return false;
    DeriveTypes(set, draft, order, diagnostics);
    if (diagnostics.HasErrors())
        return false;
    CheckComponents(set, order, diagnostics);
    return !diagnostics.HasErrors();
}

} // namespace quiver_gen::schema
