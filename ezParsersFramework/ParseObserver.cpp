#include "ez/ParseObserver.h"

ezParseObserver::~ezParseObserver() = default;

void ezParseObserver::RequestBegan(ezParseRequest /*aRequest*/, const ezMediaParserStream* /*aStream*/) {}
void ezParseObserver::RequestEnded(ezParseRequest /*aRequest*/, const ezMediaInfo* /*anInfo*/) {}
void ezParseObserver::PassBegan(ezParsePass /*aPass*/) {}
void ezParseObserver::PassEnded(ezParsePass /*aPass*/, bool /*afAnswered*/) {}
void ezParseObserver::EntryBegan(const ExtensionMimeTypeMatcherEntry& /*anEntry*/, bool /*afExcluded*/) {}
void ezParseObserver::EntryEnded(const ExtensionMimeTypeMatcherEntry& /*anEntry*/,
                                 ezEntryResult /*aResult*/) {}
void ezParseObserver::TypeBegan(const char* /*aType*/) {}
void ezParseObserver::TypeEnded(const char* /*aType*/, ezTypeResult /*aResult*/) {}
void ezParseObserver::ParserBegan(const ezBaseParser& /*aParser*/, const char* /*aName*/) {}
void ezParseObserver::ParserRefused(const ezBaseParser& /*aParser*/, ezParseRefusal /*aCause*/,
                                    const char* /*aText*/) {}
void ezParseObserver::ParserEnded(const ezBaseParser& /*aParser*/, const ezMediaInfo* /*anInfo*/) {}
void ezParseObserver::TestFileNameAsked(const ezMediaInfo* /*anInfo*/) {}
void ezParseObserver::MediaMapperAsked(const DLNAMediaMapperEntry* /*anEntry*/) {}
void ezParseObserver::MediaMapperChanged(const char* /*aKey*/, const char* /*anOld*/, const char* /*aNew*/) {}
void ezParseObserver::FactStated(const char* /*aKey*/, const ezFactSource& /*aSource*/) {}
