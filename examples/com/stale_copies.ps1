# Lists the hard copies that are not of the revision in force.
#   ./stale_copies.ps1 REGISTER USER
param([Parameter(Mandatory)][string]$Register, [Parameter(Mandatory)][string]$User)

$password = [Net.NetworkCredential]::new('', (Read-Host 'Password' -AsSecureString)).Password
$vesk = New-Object -ComObject KvVesk.clsVesk
try {
  # The results of these two say nothing; what goes wrong is thrown.
  [void]$vesk.OpenConnection("Data Source=$Register")
  [void]$vesk.Login($User, $password)
  $missing = [Type]::Missing
  $copies = $vesk.Releases($missing, $missing, $missing, $missing, $missing, $missing, $true)
  while (-not $copies.EOF) {
    $field = { param($name) $copies.Fields.Item($name).Value }
    $current = & $field CurrentRevID
    # A document without a revision in force has Null there.
    if ($current -isnot [DBNull] -and (& $field RevisionID) -ne $current) {
      [pscustomobject]@{
        Holder   = $vesk.User.getUserName((& $field UserID))
        Document = & $field DocumentNumber
        Has      = & $field RevisionLevel
        InForce  = & $field CurrentRevisionLevel
      }
    }
    $copies.MoveNext()
  }
  $copies.Close()
}
finally {
  # Root and children hold each other until the session is closed.
  $vesk.CloseSession()
  [void][Runtime.InteropServices.Marshal]::FinalReleaseComObject($vesk)
}
