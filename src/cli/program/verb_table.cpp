#include "cli/program/verb_table.h"

#include <array>

#include "cli/program/verbs.h"

namespace kv::cli {

namespace {

// A password is changed among the other things of a user, and by everybody who remembers only this.
constexpr const char* kPasswordHelp =
    "Give a user a new password, from KVVESK_NEW_PASSWORD or the terminal";

constexpr auto kVerbs = std::to_array<Verb>({
    {"new", "Make an empty register with an administrator, or a database of users and actions",
     registerNew},
    {"documents", "List documents, all or those of a saved query", documentList},
    {"document", "Show, add, change or delete one document"},
    {"document show", "Show all fields of a document", documentShow},
    {"document add", "Add a document and its first revision", documentAdd},
    {"document edit", "Change fields of a document", documentEdit},
    {"document delete", "Delete a document with its revisions, owners, approvers and copies",
     documentDelete},
    {"revisions", "List the revisions of a document", revisionList},
    {"revision", "Show, add, change, approve or delete one revision"},
    {"revision show", "Show all fields of a revision", revisionShow},
    {"revision add", "Add a revision that is being prepared to a document", revisionAdd},
    {"revision edit", "Change fields of a revision", revisionEdit},
    {"revision status", "Say where a revision stands, and who has decided what", revisionStatus},
    {"revision route", "Ask the approvers of the document for their approval", revisionRoute},
    {"revision approve", "Approve a revision when it is your turn", revisionApprove},
    {"revision reject", "Reject a revision when it is your turn", revisionReject},
    {"revision set-current", "Put a revision in force; the one before goes out of date",
     revisionSetCurrent},
    {"revision delete", "Delete a revision, not the file at its location; never the one in force",
     revisionDelete},
    {"manuals", "List manuals, all or those of a saved query", manualList},
    {"manual", "Show, add, change or delete one manual; change which documents are in it"},
    {"manual show", "Show all fields of a manual", manualShow},
    {"manual add", "Add a manual, without documents as yet", manualAdd},
    {"manual edit", "Change fields of a manual", manualEdit},
    {"manual delete", "Delete a manual with its copies; the documents in it stay in the register",
     manualDelete},
    {"manual contents", "List the documents in a manual, in its order", manualContents},
    {"manual copies", "List who has a manual, as hard copies or on a personal list", manualCopies},
    {"manual put", "Put a document into a manual and into all copies of it", manualPut},
    {"manual take", "Take a document out of a manual and out of all copies of it", manualTake},
    {"manual move", "Move a document within a manual", manualMove},
    {"release", "Give a document or a manual to a user", copyRelease},
    {"collect", "Take hard copies back from a user", copyCollect},
    {"personal", "Change what is on a user's personal list"},
    {"personal add", "Put a document or a manual on a personal list", personalAdd},
    {"personal remove", "Take a document or a manual off a personal list", personalRemove},
    {"holdings", "List the copies that somebody has", copyHoldings},
    {"releases", "List who has which copies", copyReleases},
    {"stale", "List the copies that are not of the revision in force", copyStale},
    {"owners", "Show or change who owns a document"},
    {"owners show", "Show the owners of a document", ownerShow},
    {"owners add", "Make a user an owner of a document", ownerAdd},
    {"owners remove", "Let a user be an owner no longer", ownerRemove},
    {"approvers", "Show or change who must approve the revisions of a document, in which order"},
    {"approvers show", "Show the approval list of a document, in its order", approverShow},
    {"approvers add",
     "Put a user into the approval list of a document: behind the last, or before another",
     approverAdd},
    {"approvers remove", "Take a user out of the approval list of a document", approverRemove},
    {"approvers move", "Have an approver asked before another", approverMove},
    {"actions", "List what somebody has been asked to do", actionList},
    {"action", "Complete or close an action of your own", nullptr,
     "Administrators may settle the actions of others too."},
    {"action complete", "Record that an action is completed", actionComplete},
    {"action close", "Record that an action is closed", actionClose},
    {"queries",
     "Show, add, change or delete the saved queries that documents, manuals and users are listed "
     "by"},
    {"queries list", "List all saved queries with their conditions", queryList},
    {"queries show", "Show all saved queries, or one, with their conditions", queryShow},
    {"queries add", "Save a new query", queryAdd},
    {"queries set", "Save a query, whether there is one of that name or not", querySet},
    {"queries edit", "Change the name or criteria of a saved query", queryEdit},
    {"queries delete", "Delete a saved query", queryDelete},
    {"users", "List users, all or those of a saved query", userList},
    {"user", "Show, add, change or delete one user"},
    {"user show", "Show all fields of a user, and the workgroup", userShow},
    {"user add", "Add a user", userAdd},
    {"user edit", "Change fields of a user", userEdit},
    {"user passwd", kPasswordHelp, userPassword},
    {"user delete", "Delete a user with ownerships, places in approval lists and copies",
     userDelete},
    {"workgroups", "List the workgroups, or who is in one of them", workgroupList},
    {"rights", "Show or change rights and options"},
    {"rights show", "Show what a user may do, what owners may do, and the options in force",
     rightsShow},
    {"rights edit", "Change rights and options", rightsEdit},
    {"passwd", kPasswordHelp, userPassword},
    {"keywords", "List, add or delete the values that validated fields may have"},
    {"keywords show", "List the keywords of one field, or of all", keywordShow},
    {"keywords add", "Add a keyword to a field", keywordAdd},
    {"keywords delete", "Delete a keyword; records that have it keep it", keywordDelete},
    {"labels", "Show or change what the register calls its fields"},
    {"labels show", "List the fields and their labels", labelShow},
    {"labels set", "Give a field another label", labelSet},
    {"config", "Show configuration values, or set one", registerConfig},
    {"import",
     "Fill a register from a folder of CSV files, all of it or nothing; for administrators",
     registerImport},
    {"export",
     "Write a register as a folder of CSV files that can be imported, all of it or nothing; for "
     "administrators",
     registerExport},
    {"copy",
     "Copy a register to a new place: from a file to a server, back, or to another file; all of "
     "it or nothing; for administrators",
     registerCopy},
    {"sql", "Run a statement of the register's SQL dialect; for administrators", registerSql},
    {"completion", "Print what completes kvvesk in a shell", programCompletion},
    {"manpage", "Print the manual page", programManualPage},
});

}  // namespace

std::span<const Verb> verbs() noexcept { return kVerbs; }

}  // namespace kv::cli
