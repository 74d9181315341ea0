#include "suite/standing/standing_memory.h"

namespace qndr::suite {

PartnerStanding ReadPartnerStanding(const sql::Connection& connection, std::string_view partner) {
    sql::Statement row = connection.Prepare(
        "SELECT Number, Told, ToldFile, Heard, HeardFile, HeardOn, ProvenOn, WantsProof, Proof, ProofOn, "
        "ProofPlace, "
        "ProofNumber, Answer, AnswerRows, Alike, ReadyFrom, OutOfStep, OutOfStepSince, Mended, Computers, "
        "KnownPlace, SendsGivenUp "
        "FROM PartnerStandings WHERE Partner = ?1");
    row.Bind(1, partner);
    PartnerStanding standing;
    standing.partner = partner;
    if (!row.Step()) {
        return standing;
    }
    int column = 0;
    const auto number = [&] { return row.Integer(column++); };
    const auto text = [&] { return std::string(row.Text(column++)); };
    standing.number = number();
    standing.told = text();
    standing.toldFile = text();
    standing.heard = text();
    standing.heardFile = text();
    standing.heardOn = text();
    standing.provenOn = text();
    standing.wantsProof = number() != 0;
    standing.proof = text();
    standing.proofOn = text();
    standing.proofPlace = number();
    standing.proofNumber = number();
    standing.answer = text();
    standing.rows = text();
    standing.alike = number() != 0;
    standing.readyFrom = number();
    standing.outOfStep = text();
    standing.outOfStepSince = text();
    standing.mended = text();
    standing.computers = text();
    standing.knownPlace = number();
    standing.sendsGivenUp = number() != 0;
    return standing;
}

void WritePartnerStanding(const sql::Connection& connection, const PartnerStanding& standing) {
    sql::Statement row = connection.Prepare(
        "INSERT OR REPLACE INTO PartnerStandings (Partner, Number, Told, ToldFile, Heard, HeardFile, HeardOn, "
        "ProvenOn, WantsProof, Proof, ProofOn, ProofPlace, ProofNumber, Answer, AnswerRows, Alike, ReadyFrom, "
        "OutOfStep, OutOfStepSince, Mended, Computers, KnownPlace, SendsGivenUp) "
        "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, ?17, ?18, ?19, ?20, ?21, "
        "?22, ?23)");
    int parameter = 0;
    const auto number = [&](std::int64_t value) { row.Bind(++parameter, value); };
    const auto text = [&](std::string_view value) { row.Bind(++parameter, value); };
    text(standing.partner);
    number(standing.number);
    text(standing.told);
    text(standing.toldFile);
    text(standing.heard);
    text(standing.heardFile);
    text(standing.heardOn);
    text(standing.provenOn);
    number(standing.wantsProof ? 1 : 0);
    text(standing.proof);
    text(standing.proofOn);
    number(standing.proofPlace);
    number(standing.proofNumber);
    text(standing.answer);
    text(standing.rows);
    number(standing.alike ? 1 : 0);
    number(standing.readyFrom);
    text(standing.outOfStep);
    text(standing.outOfStepSince);
    text(standing.mended);
    text(standing.computers);
    number(standing.knownPlace);
    number(standing.sendsGivenUp ? 1 : 0);
    row.Step();
}

std::string ReadProof(const sql::Connection& connection, std::string_view proof) {
    sql::Statement digests = connection.Prepare("SELECT Digests FROM StandingProofs WHERE ID = ?1");
    digests.Bind(1, proof);
    return digests.Step() ? std::string(digests.Text(0)) : "";
}

void KeepProof(const sql::Connection& connection, std::string_view proof, std::string_view digests) {
    sql::Statement keep =
        connection.Prepare("INSERT OR REPLACE INTO StandingProofs (ID, Digests) VALUES (?1, ?2)");
    keep.Bind(1, proof);
    keep.Bind(2, digests);
    keep.Step();
}

void ForgetProofsNotOffered(const sql::Connection& connection) {
    connection.Execute("DELETE FROM StandingProofs WHERE ID NOT IN (SELECT Proof FROM PartnerStandings)");
}

} // namespace qndr::suite
